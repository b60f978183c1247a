// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileUrls.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

/// A folder of real files that is gone at the end of a test.
class TestFiles
{
public:
    QUrl folder() const { return FileUrls::fromPath(m_folder.path()); }
    QUrl url(const QString &name) const { return FileUrls::child(folder(), name); }

    /// Makes a file whose content is `content`, or its name.
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

    /// Empty also when there is no file.
    static QByteArray read(const QUrl &url)
    {
        QFile file(url.toLocalFile());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_folder;
};
