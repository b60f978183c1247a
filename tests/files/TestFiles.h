// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileUrls.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

/// A folder of real files that is deleted at the end of a test.
class TestFiles
{
public:
    QUrl folder() const { return FileUrls::fromPath(m_folder.path()); }
    QUrl url(const QString &name) const { return FileUrls::child(folder(), name); }

    /// Creates a file with `content`, or with its own name as content.
    QUrl make(const QString &name, const QByteArray &content = {}) const
    {
        write(url(name), content.isEmpty() ? name.toUtf8() : content);
        return url(name);
    }

    static void write(const QUrl &url, const QByteArray &content)
    {
        QFile file(url.toLocalFile());
        if (!file.open(QFile::WriteOnly) || file.write(content) != content.size())
            qFatal("can't write %s", qUtf8Printable(url.toLocalFile()));
    }

    /// Makes it a file that was last modified this many minutes ago.
    static void setAge(const QUrl &url, int minutes)
    {
        QFile file(url.toLocalFile());
        if (!file.open(QFile::ReadWrite) ||
            !file.setFileTime(QDateTime::currentDateTime().addSecs(-60LL * minutes),
                              QFileDevice::FileModificationTime))
            qFatal("can't set the time of %s", qUtf8Printable(url.toLocalFile()));
    }

    /// Also empty if the file does not exist.
    static QByteArray read(const QUrl &url)
    {
        QFile file(url.toLocalFile());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_folder;
};
