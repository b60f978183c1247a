// SPDX-License-Identifier: MIT
#pragma once

#include "app/ActiveApplication.h"
#include "app/NameSuggestions.h"
#include "app/SearchController.h"
#include "app/StatusMenu.h"
#include "app/welcome/WelcomeController.h"
#include "detection/ScreenshotFolder.h"
#include "files/ScreenshotActions.h"
#include "files/UndoHistory.h"
#include "files/recent/RecentScreenshots.h"
#include "files/recent/RecentScreenshotsController.h"
#include "imaging/ScreenshotImages.h"
#include "tray/TrayController.h"

#include <QObject>
#include <QTimer>
#include <QUrl>

#include <memory>

class ScreenshotWatcher;
struct Platform;

/// The coordinator: it owns the parts of the running program and takes each new screenshot through
/// them: detected, shown in the tray, copied, named, renamed. Main thread.
class VelmoraApp : public QObject
{
    Q_OBJECT
public:
    /// The platform must outlive this object. Nothing happens before the launch.
    explicit VelmoraApp(Platform &platform, QObject *parent = nullptr);
    ~VelmoraApp() override;

    /// The launch; called once, from the running event loop.
    void applicationDidFinishLaunching();

    /// The user has opened the program again: shows the welcome window.
    void applicationShouldHandleReopen();

    /// Waits a moment for file operations to finish.
    void applicationWillTerminate();

    /// Watches `folder` instead of the previous one. Files that came into it at `newSince` or later
    /// are new.
    void startWatching(const QUrl &folder, FileTime newSince = FileTime::max());

    /// Takes a new screenshot through all its steps.
    void handleNewScreenshot(const QUrl &reported);

private:
    void connectMenu();
    void connectWelcome();
    void connectTray();

    void folderChanged(const QUrl &folder);
    void takeIn(const QUrl &url);

    void perform(const QString &action);
    void showRecentScreenshots();
    void keep(const QUrl &url);

    Platform &m_platform;
    ScreenshotFolder m_folder;
    ScreenshotImages m_images;
    ActiveApplication m_activeApplication;
    UndoHistory m_undoHistory;
    ScreenshotActions m_actions;
    RecentScreenshots m_recentScreenshots;
    SearchController m_search;
    RecentScreenshotsController m_recentWindow;
    StatusMenu m_statusMenu;
    WelcomeController m_welcome;
    QTimer m_welcomeSoon;
    TrayController m_trayController;
    NameSuggestions m_names;
    std::unique_ptr<ScreenshotWatcher> m_watcher;
};
