// SPDX-License-Identifier: MIT
#pragma once

#include "core/VelmoraSettings.h"
#include "detection/ScreenshotFolderResolver.h"
#include "files/recent/RecentScreenshots.h"
#include "filesystem/FileUrls.h"
#include "tests/files/TestFiles.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// The recent list of a folder of real files.
class RecentScreenshotsFixture
{
protected:
    void begin()
    {
        m_files = std::make_unique<TestFiles>();
        m_elsewhere = std::make_unique<TestFiles>();
        m_folder = m_files->folder();
        VelmoraSettings::open().clear();
        m_recent = std::make_unique<RecentScreenshots>(access());
    }

    /// As another program reads it: this program's own settings know a value before it is on disk.
    static QStringList stored()
    {
        if (!VelmoraSettings::open().waitUntilStored(std::chrono::seconds(10)))
            return {u"not stored"_s};
        const QTemporaryDir copy;
        const QString path = copy.filePath(u"copy.conf"_s);
        QFile::copy(VelmoraSettings::open().fileName(), path);
        return QSettings(path, QSettings::IniFormat).value(u"recentScreenshots"_s).toStringList();
    }

    static QStringList pathsOf(const QList<QUrl> &urls)
    {
        QStringList paths;
        for (const QUrl &url : urls)
            paths << url.toLocalFile();
        return paths;
    }

    ScreenshotFolderAccess access() const
    {
        return {[this] { return m_folder; }, ScreenshotFolderResolver::readableScreenshotFiles,
                ScreenshotFolderResolver::modificationDate};
    }

    /// A file that was last modified this many minutes ago.
    static QUrl make(const TestFiles &files, const QString &name, int minutes)
    {
        const QUrl url = files.make(name);
        TestFiles::setAge(url, minutes);
        return url;
    }
    QUrl make(const QString &name, int minutes) const { return make(*m_files, name, minutes); }

    /// Waits until the list has been refreshed.
    void settle() const
    {
        QSignalSpy refreshed(m_recent.get(), &RecentScreenshots::refreshed);
        m_recent->refresh();
        QTRY_VERIFY(!refreshed.isEmpty());
        // That listing may have begun before the last change.
        refreshed.clear();
        m_recent->refresh();
        QTRY_VERIFY(!refreshed.isEmpty());
    }
    QStringList names() const
    {
        QStringList names;
        for (const QUrl &url : m_recent->urls())
            names << FileUrls::lastPathComponent(url);
        return names;
    }

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestFiles> m_elsewhere;
    QUrl m_folder;
    std::unique_ptr<RecentScreenshots> m_recent;
};
