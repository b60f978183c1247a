// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileUrls.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// A file "source", and folders on its file system and on another one.
class MoveFileFixture
{
protected:
    void begin()
    {
        m_here = std::make_unique<QTemporaryDir>();
        m_elsewhere = std::make_unique<QTemporaryDir>(u"/dev/shm/velmora-XXXXXX"_s);
        QVERIFY(m_here->isValid() && m_elsewhere->isValid());
        QVERIFY(statusOf(here("")).st_dev != statusOf(elsewhere("")).st_dev);
        write(here("source"), content);
    }

    static void addPlaces()
    {
        QTest::addColumn<bool>("isElsewhere");
        QTest::newRow("on one file system") << false;
        QTest::newRow("to another file system") << true;
    }

    QUrl here(const char *name) const { return in(*m_here, name); }
    QUrl elsewhere(const char *name) const { return in(*m_elsewhere, name); }
    QUrl target(bool isElsewhere, const char *name) const
    {
        return isElsewhere ? elsewhere(name) : here(name);
    }

    static QByteArray pathOf(const QUrl &url) { return QFile::encodeName(url.toLocalFile()); }
    static void write(const QUrl &url, const QByteArray &bytes)
    {
        QFile file(url.toLocalFile());
        QVERIFY(file.open(QFile::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    static QByteArray read(const QUrl &url)
    {
        QFile file(url.toLocalFile());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QStringList namesIn(const QUrl &folder)
    {
        return QDir(folder.toLocalFile())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    static struct stat statusOf(const QUrl &url)
    {
        struct stat status = {};
        if (::lstat(pathOf(url).constData(), &status) != 0)
            qWarning("no status of %s", pathOf(url).constData());
        return status;
    }

    static inline const QByteArray content = QByteArray(300'000, 'c');

private:
    static QUrl in(const QTemporaryDir &folder, const char *name)
    {
        return FileUrls::fromPath(folder.filePath(QString::fromUtf8(name)));
    }

    std::unique_ptr<QTemporaryDir> m_here;
    std::unique_ptr<QTemporaryDir> m_elsewhere;
};
