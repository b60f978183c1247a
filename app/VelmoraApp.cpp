// SPDX-License-Identifier: MIT
#include "app/VelmoraApp.h"

#include "core/VelmoraLog.h"
#include "core/VelmoraSettings.h"
#include "detection/ScreenshotFolderResolver.h"
#include "detection/ScreenshotWatcher.h"
#include "files/recent/RecentScreenshotsWindow.h"
#include "filesystem/FileUrls.h"
#include "platform/Platform.h"
#include "style/lightAppearance.h"

#include <QApplication>

#include <chrono>

using namespace Qt::StringLiterals;

namespace
{

using namespace std::chrono_literals;

/// Long enough after the launch that the tray and the menu come first.
constexpr auto welcomeDelay = 350ms;

constexpr auto timeToStoreFolder = 2s;

/// A disk that takes longer than this must not delay the end of the session.
constexpr auto longestWaitForFiles = 3s;

} // namespace

VelmoraApp::VelmoraApp(Platform &platform, QObject *parent)
    : QObject(parent)
    , m_platform(platform)
    , m_folder(*platform.screenshotPreferences)
    , m_images(*platform.fileWriters)
    , m_activeApplication(*platform.frontmostApplication)
    , m_actions({*platform.systemTrash, *platform.pasteboard, *platform.fileBrowser, m_images,
                 *platform.desktopRecords},
                m_undoHistory)
    , m_recentScreenshots({
          .folder = [this] { return m_folder.current(); },
          .newestFiles = ScreenshotFolderResolver::readableScreenshotFiles,
          .modificationDate = ScreenshotFolderResolver::modificationDate,
      })
    , m_search({platform.textRecognizer, platform.powerSource, m_actions, m_images,
                *platform.desktopSearch},
               [this] { return m_names.isAnyExpected(); })
    , m_recentWindow({m_actions, m_images, &m_search.search()}, m_recentScreenshots)
    , m_statusMenu(*platform.statusItem)
    , m_welcome({*platform.screenshotPreferences, *platform.loginItem, *platform.desktopLimits},
                m_folder)
    , m_trayController(*platform.panelWindow, m_images, m_actions)
    , m_names(*platform.textRecognizer, m_images, m_trayController)
{
    m_welcomeSoon.setSingleShot(true);
    m_welcomeSoon.setTimerType(Qt::PreciseTimer);
}

VelmoraApp::~VelmoraApp() = default;

void VelmoraApp::applicationDidFinishLaunching()
{
    VelmoraLog::write(u"applicationDidFinishLaunching"_s);
    applyLightAppearance();
    connectMenu();
    m_statusMenu.show();
    m_activeApplication.observe();
    m_recentScreenshots.load();
    m_statusMenu.updateStatusItemTitle();
    const QUrl folder = m_folder.current();
    VelmoraLog::write(u"watching "_s + folder.toLocalFile());
    connectWelcome();
    m_welcomeSoon.callOnTimeout(this, [this, folder] { m_welcome.showWelcome(folder); });
    m_welcomeSoon.start(welcomeDelay);
    connectTray();
    startWatching(folder);
    m_search.start();
    connect(&m_folder, &ScreenshotFolder::changed, this, &VelmoraApp::folderChanged);
}

void VelmoraApp::applicationShouldHandleReopen()
{
    m_welcome.showWelcome(m_folder.current());
}

void VelmoraApp::applicationWillTerminate()
{
    if (m_watcher)
        m_watcher->stop();
    m_trayController.commitTypedNames();
    m_actions.finish(longestWaitForFiles);
}

void VelmoraApp::startWatching(const QUrl &folder, FileTime newSince)
{
    if (m_watcher)
        m_watcher->stop();
    m_watcher = std::make_unique<ScreenshotWatcher>(
        folder, [this](const QUrl &url) { handleNewScreenshot(url); }, m_platform.makeFolderEvents);
    m_watcher->start(newSince);
    m_search.setFolder(folder);
}

/// A tool that remembers its last folder stores it right after the screenshot.
void VelmoraApp::folderChanged(const QUrl &folder)
{
    startWatching(folder, FileTimes::now() - timeToStoreFolder);
    m_recentScreenshots.refresh();
}

void VelmoraApp::handleNewScreenshot(const QUrl &reported)
{
    const QUrl url = FileUrls::standardized(reported);
    m_actions.whenNew(url, [this, url] { takeIn(url); });
}

void VelmoraApp::takeIn(const QUrl &url)
{
    if (m_trayController.containsScreenshot(url)) {
        m_watcher->ignore(url);
        VelmoraLog::write(u"ignored already visible "_s + url.toLocalFile());
        return;
    }
    VelmoraLog::write(u"detected "_s + url.toLocalFile());
    m_activeApplication.refresh();
    // Read before the recent list is stored: while the settings are being written, another
    // program's changes to them would go unnoticed.
    const CopyBehavior behavior = VelmoraSettings::copyBehavior();
    m_recentScreenshots.add(url);

    const ScreenshotPointer screenshot =
        m_actions.open(url, m_activeApplication.lastActiveAppName());
    m_search.arrived(url, screenshot->applicationName());
    const QString fallback = ScreenshotNamer::fallbackName(screenshot->applicationName(), url);
    const BlindAreas trayAreas = m_names.trayAreasUntilNow();
    const QUuid itemID = m_trayController.addScreenshot(screenshot, fallback);
    m_trayController.updateSuggestion(itemID, fallback, true);
    m_trayController.markNaming(itemID);

    if (behavior != CopyBehavior::none)
        m_actions.copyNew(screenshot, behavior);
    const auto application = m_activeApplication.isKnown() ? ScreenshotNamer::AppName::Known
                                                           : ScreenshotNamer::AppName::Assumed;
    m_names.suggest(itemID, screenshot, {trayAreas, application});
}

void VelmoraApp::connectMenu()
{
    connect(&m_statusMenu, &StatusMenu::showStatusRequested, this,
            [this] { m_welcome.showWelcome(m_folder.current()); });
    connect(&m_statusMenu, &StatusMenu::recentScreenshotsRequested, this,
            &VelmoraApp::showRecentScreenshots);
    connect(&m_statusMenu, &StatusMenu::undoRequested, &m_actions, &ScreenshotActions::undoLast);
    connect(&m_actions, &ScreenshotActions::kept, this, &VelmoraApp::keep);
    connect(&m_statusMenu, &StatusMenu::instantModeRequested, &m_welcome,
            &WelcomeController::optimizeScreenshotSpeed);
    connect(&m_statusMenu, &StatusMenu::revealFolderRequested, this,
            [this] { m_platform.fileBrowser->reveal(m_folder.current()); });
    connect(&m_statusMenu, &StatusMenu::quitRequested, qApp, &QCoreApplication::quit,
            Qt::QueuedConnection);
    connect(&m_undoHistory, &UndoHistory::changed, this,
            [this] { m_statusMenu.setUndo(m_undoHistory.title(), m_undoHistory.canUndo()); });
    connect(&m_search, &SearchController::windowRequested, this, [this](const QString &words) {
        showRecentScreenshots();
        m_recentWindow.window()->searchFor(words);
    });
    connect(m_platform.runningInstance.get(), &RunningInstance::reopened, this,
            &VelmoraApp::applicationShouldHandleReopen);
    connect(m_platform.runningInstance.get(), &RunningInstance::actionRequested, this,
            &VelmoraApp::perform);
}

void VelmoraApp::connectWelcome()
{
    m_welcome.setActions(m_statusMenu.actions());
    connect(&m_welcome, &WelcomeController::folderChosen, this,
            [this](const QUrl &folder) { startWatching(folder); });
    connect(&m_welcome, &WelcomeController::trayPositionChanged, &m_trayController,
            &TrayController::layoutPanel);
    connect(&m_welcome, &WelcomeController::recentScreenshotsRequested, this,
            &VelmoraApp::showRecentScreenshots);
}

void VelmoraApp::connectTray()
{
    m_trayController.onRenamed = [this](const QUrl &url) { m_actions.keep(url); };
    m_trayController.onRenameUndoable = [this](const QUrl &oldURL, const QUrl &newURL) {
        m_actions.remember(UndoableAction::rename(oldURL, newURL));
    };
    m_trayController.onTrashUndoable = [this](const QUrl &originalURL, const QUrl &trashedURL) {
        m_actions.remember(UndoableAction::trash(originalURL, trashedURL));
    };
    m_trayController.onUndoPerformed = [this](const UndoableAction &action, const QUrl &url) {
        m_actions.noteUndone(action, url);
    };
    m_trayController.onRowGone = [this](const QUuid &itemID) { m_names.cancel(itemID); };
}

/// The program itself has put the file there, so it is a recent screenshot but not a new one.
void VelmoraApp::keep(const QUrl &url)
{
    m_watcher->ignore(url);
    m_recentScreenshots.add(url);
}

/// When started for one of its actions, the program opens only what that action opens.
void VelmoraApp::perform(const QString &action)
{
    m_welcomeSoon.stop();
    m_statusMenu.trigger(action);
}

void VelmoraApp::showRecentScreenshots()
{
    m_welcome.closeWelcome();
    m_recentWindow.show();
    m_recentWindow.window()->addActions(m_statusMenu.actions());
    m_search.attend(*m_recentWindow.window());
}
