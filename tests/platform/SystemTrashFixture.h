// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileUrls.h"
#include "platform/SystemTrash.h"
#include "tests/files/TestFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

/// The trash of a home of its own, files to put there, and what lies in it.
class SystemTrashFixture
{
protected:
    void begin()
    {
        m_files = std::make_unique<TestFiles>();
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_data->filePath(u"data"_s)));
        m_trash = makeSystemTrash();
    }

    QString homeTrash() const { return m_data->filePath(u"data/Trash"_s); }
    QString homeTrashed(const QString &name) const { return homeTrash() + u"/files/"_s + name; }
    QString homeInfo(const QString &name) const
    {
        return homeTrash() + u"/info/"_s + name + u".trashinfo"_s;
    }
    static QByteArray pathOf(const QUrl &url) { return QFile::encodeName(url.toLocalFile()); }
    static QStringList filesIn(const QString &folder)
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    static QByteArray contentOf(const QString &path)
    {
        return TestFiles::read(FileUrls::fromPath(path));
    }

    /// The file's path from an info file, whose other contents are checked.
    static QByteArray notedPath(const QString &infoPath)
    {
        const QList<QByteArray> lines = contentOf(infoPath).split('\n');
        if (lines.size() != 4 || lines.at(0) != "[Trash Info]" || !lines.at(3).isEmpty() ||
            !lines.at(1).startsWith("Path=") || !lines.at(2).startsWith("DeletionDate="))
            return "no proper note: " + contentOf(infoPath);
        const auto deleted = QDateTime::fromString(
            QString::fromLatin1(lines.at(2).mid(QByteArrayView("DeletionDate=").size())),
            Qt::ISODate);
        const qint64 age = deleted.secsTo(QDateTime::currentDateTime());
        return age >= 0 && age < 60 ? lines.at(1).mid(QByteArrayView("Path=").size())
                                    : "no proper date";
    }

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<SystemTrash> m_trash;
};
