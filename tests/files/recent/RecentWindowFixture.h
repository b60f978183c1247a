// SPDX-License-Identifier: MIT
#pragma once

#include "detection/ScreenshotFolderResolver.h"
#include "files/ScreenshotActions.h"
#include "files/UndoHistory.h"
#include "files/recent/RecentScreenshots.h"
#include "files/recent/RecentScreenshotsController.h"
#include "files/recent/RecentScreenshotsWindow.h"
#include "imaging/ScreenshotImages.h"
#include "platform/FileWriters.h"
#include "tests/fakes/FakeDesktopRecords.h"
#include "tests/fakes/FakeFileBrowser.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/fakes/FakeSystemTrash.h"
#include "tests/files/TestFiles.h"

#include <QImage>
#include <QTest>

#include <memory>

/// What the recent screenshots' window needs: a folder of real files, and services that do nothing
/// outside of it. The test itself makes the controller.
class RecentWindowFixture
{
protected:
    void begin()
    {
        m_files = std::make_unique<TestFiles>();
        m_folder = m_files->folder();
        m_browser.revealed.clear();
        m_pasteboard.contents.reset();
        m_trash = std::make_unique<FakeSystemTrash>();
        m_recent = std::make_unique<RecentScreenshots>(ScreenshotFolderAccess{
            [this] { return m_folder; }, ScreenshotFolderResolver::recentScreenshotFiles,
            ScreenshotFolderResolver::modificationDate});
        m_history = std::make_unique<UndoHistory>();
        m_actions = std::make_unique<ScreenshotActions>(
            ScreenshotActions::Services{*m_trash, m_pasteboard, m_browser, m_images, m_records},
            *m_history);
    }
    void end()
    {
        m_controller.reset();
        m_actions.reset();
        m_recent.reset();
    }

    /// A picture of one colour that was last modified this many minutes ago.
    QUrl picture(const QString &name, QSize size, QColor color, int minutes) const
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        const QUrl url = m_files->url(name);
        if (!image.save(url.toLocalFile(), "png"))
            qFatal("can't write a picture");
        TestFiles::setAge(url, minutes);
        return url;
    }
    RecentScreenshotsWindow &window() const { return *m_controller->window(); }
    void showWindow() const
    {
        m_controller->show();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
    }

    const std::unique_ptr<FileWriters> m_writers = makeFileWriters();
    ScreenshotImages m_images{*m_writers};
    std::unique_ptr<TestFiles> m_files;
    QUrl m_folder;
    FakeFileBrowser m_browser;
    FakeDesktopRecords m_records;
    FakePasteboard m_pasteboard;
    std::unique_ptr<FakeSystemTrash> m_trash;
    std::unique_ptr<RecentScreenshots> m_recent;
    std::unique_ptr<UndoHistory> m_history;
    std::unique_ptr<ScreenshotActions> m_actions;
    std::unique_ptr<RecentScreenshotsController> m_controller;
};
