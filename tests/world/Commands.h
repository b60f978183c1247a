// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

/// The only commands that programs started from now on can find, besides the shell: each records
/// that it was called, and how. Restores the search path at its end.
class Commands
{
public:
    Commands() : m_path(qgetenv("PATH")) { qputenv("PATH", QFile::encodeName(m_folder.path())); }
    ~Commands() { qputenv("PATH", m_path); }
    Q_DISABLE_COPY_MOVE(Commands)

    /// Removes all commands and records. The folder stays the same, because Qt caches where it has
    /// found some of them.
    void clear() const
    {
        const QDir folder(m_folder.path());
        for (const QString &name : folder.entryList(QDir::Files))
            QFile::remove(folder.filePath(name));
    }

    /// A command that prints `output`.
    void add(const QString &name, const QString &output = {}) const
    {
        QFile script(m_folder.filePath(name));
        if (!script.open(QFile::WriteOnly))
            qFatal("can't write a command");
        script.write(
            u"#!/bin/sh\necho \"%1 $*\" >>'%2'\necho '%3'\n"_s.arg(name, notes(), output).toUtf8());
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    /// The command lines so far.
    QStringList calls() const
    {
        QFile file(notes());
        if (!file.open(QFile::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    QString notes() const { return m_folder.filePath(u"notes"_s); }

    QTemporaryDir m_folder;
    QByteArray m_path;
};
