// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FolderEvents.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// The real events of a folder, and what they have reported.
class FolderEventsFixture
{
protected:
    using Coverage = FolderEvents::Coverage;

    void begin()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_folder = m_directory->path() + u"/Shots"_s;
        QVERIFY(QDir().mkdir(m_folder));
        m_events = makeFolderEvents();
        m_names.clear();
        m_listAgain = std::make_unique<QSignalSpy>(m_events.get(), &FolderEvents::listAgain);
        m_gone = std::make_unique<QSignalSpy>(m_events.get(), &FolderEvents::folderGone);
        QObject::connect(m_events.get(), &FolderEvents::entriesChanged, m_events.get(),
                         [this](const QStringList &names) { m_names += names; });
    }
    void end() { m_events.reset(); }

    static QByteArray raw(const QString &path) { return QFile::encodeName(path); }
    static bool write(const QString &path, const QByteArray &content = "picture")
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Append) &&
               file.write(content) == content.size();
    }
    static QStringList openDescriptors()
    {
        return QDir(u"/proc/self/fd"_s).entryList(QDir::System | QDir::Files);
    }
    QString path(const char *name) const { return m_folder + u'/' + QLatin1String(name); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_folder;
    std::unique_ptr<FolderEvents> m_events;
    QStringList m_names;
    std::unique_ptr<QSignalSpy> m_listAgain;
    std::unique_ptr<QSignalSpy> m_gone;
};
