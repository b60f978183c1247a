// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

/// A folder to watch.
class ScreenshotWatcherFixture
{
protected:
    void begin()
    {
        // The watchers of earlier tests end in the background.
        QTRY_COMPARE(openInotifyDescriptors(), 0);
        m_directory = std::make_unique<QTemporaryDir>();
        m_folder = m_directory->path() + u"/Shots"_s;
        QVERIFY(QDir().mkpath(m_folder));
    }

    static qsizetype openInotifyDescriptors()
    {
        const QStringList all = QDir(u"/proc/self/fd"_s).entryList(QDir::System | QDir::Files);
        return std::count_if(all.begin(), all.end(), [](const QString &number) {
            return QFile::symLinkTarget(u"/proc/self/fd/"_s + number).contains(u"inotify"_s);
        });
    }
    QString inFolder(const char *name) const { return m_folder + u'/' + QString::fromUtf8(name); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_folder;
};
