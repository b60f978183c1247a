// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileUrls.h"
#include "platform/FileBrowser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// A screenshot to show, and the user's settings for opening folders.
class FileBrowserFixture
{
protected:
    void begin()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_shot = FileUrls::child(folder(), u"a b é%25#.png"_s);
        write(m_shot.toLocalFile(), {});
        m_browser = makeFileBrowser();
    }
    static void end()
    {
        const QDir configuration(qEnvironmentVariable("XDG_CONFIG_HOME"));
        for (const QString &list : configuration.entryList({u"*mimeapps.list"_s}))
            QVERIFY(QFile::remove(configuration.filePath(list)));
        QDir(qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s).removeRecursively();
    }

    QUrl folder() const { return FileUrls::fromPath(m_folder->path()); }

    /// Makes it the user's program for opening folders.
    static void choose(const QString &entry, const QString &list = u"mimeapps.list"_s)
    {
        write(qEnvironmentVariable("XDG_CONFIG_HOME") + u'/' + list,
              "[Default Applications]\ninode/directory=gone.desktop;" + entry.toUtf8() + ";\n");
        install(entry);
    }

    static void install(const QString &entry)
    {
        write(qEnvironmentVariable("XDG_DATA_HOME") + u"/applications/"_s + entry,
              "[Desktop Entry]\nType=Application\nName=Files\nExec=true\n");
    }

    static void write(const QString &path, const QByteArray &content)
    {
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QFile::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QUrl m_shot;
    std::unique_ptr<FileBrowser> m_browser;
};
