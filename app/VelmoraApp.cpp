#include "app/VelmoraApp.h"

#include "core/VelmoraLog.h"
#include "core/VelmoraSettings.h"
#include "core/whenFinished.h"
#include "detection/ScreenshotFolderResolver.h"
#include "detection/ScreenshotWatcher.h"
#include "files/ClipboardWriter.h"
#include "files/recent/RecentScreenshotsWindow.h"
#include "filesystem/FileUrls.h"
#include "filesystem/OpenFile.h"
#include "platform/Platform.h"
#include "style/lightAppearance.h"

#include <QApplication>

#include <chrono>

namespace
{

using namespace std::chrono_literals;

/// After the launch, so that the tray and the menu are there first.
constexpr auto welcomeDelay = 350ms;

constexpr auto timeToStoreFolder = 2s;

} // namespace

VelmoraApp::VelmoraApp(Platform &platform, QObject *parent)
    : QObject(parent)
    , m_platform(platform)
    , m_folder(*platform.screenshotPreferences)
    , m_images(*platform.fileWriters)
    , m_namer(*platform.textRecognizer, m_images)
    , m_activeApplication(*platform.frontmostApplication)
    , m_undoHistory(*platform.systemTrash)
    , m_recentScreenshots({
          .folder = [this] { return m_folder.current(); },
          .newestFiles = ScreenshotFolderResolver::readableScreenshotFiles,
          .modificationDate = ScreenshotFolderResolver::modificationDate,
      })
    , m_recentWindow({*platform.fileBrowser, *platform.pasteboard, *platform.systemTrash, m_images},
                     m_recentScreenshots, m_undoHistory)
    , m_statusMenu(*platform.statusItem)
    , m_welcome(platform, m_folder)
    , m_trayController(platform, m_images)
{
    m_welcomeSoon.setSingleShot(true);
    m_welcomeSoon.setTimerType(Qt::PreciseTimer);
}

VelmoraApp::~VelmoraApp() = default;

void VelmoraApp::applicationDidFinishLaunching()
{
    VelmoraLog::write(QStringLiteral("applicationDidFinishLaunching"));
    applyLightAppearance();
    connectMenu();
    m_statusMenu.show();
    m_activeApplication.observe();
    m_recentScreenshots.load();
    m_statusMenu.updateStatusItemTitle();
    const QUrl folder = m_folder.current();
    VelmoraLog::write(QStringLiteral("watching ") + folder.toLocalFile());
    connectWelcome();
    m_welcomeSoon.callOnTimeout(this, [this, folder] { m_welcome.showWelcome(folder); });
    m_welcomeSoon.start(welcomeDelay);
    connectTray();
    startWatching(folder);
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
}

void VelmoraApp::startWatching(const QUrl &folder, FileTime newSince)
{
    if (m_watcher)
        m_watcher->stop();
    m_watcher = std::make_unique<ScreenshotWatcher>(
        folder, [this](const QUrl &url) { handleNewScreenshot(url); }, m_platform.makeFolderEvents);
    m_watcher->start(newSince);
}

/// A tool that remembers where it has saved stores that right after the screenshot.
void VelmoraApp::folderChanged(const QUrl &folder)
{
    startWatching(folder, FileTimes::now() - timeToStoreFolder);
    m_recentScreenshots.refresh();
}

void VelmoraApp::handleNewScreenshot(const QUrl &reported)
{
    const QUrl url = FileUrls::standardized(reported);
    if (m_trayController.containsScreenshot(url)) {
        m_watcher->ignore(url);
        VelmoraLog::write(QStringLiteral("ignored already visible ") + url.toLocalFile());
        return;
    }
    VelmoraLog::write(QStringLiteral("detected ") + url.toLocalFile());
    m_activeApplication.refresh();
    m_recentScreenshots.add(url);

    const QString fallback =
        ScreenshotNamer::fallbackName(m_activeApplication.lastActiveAppName(), url);
    const QUuid itemID = m_trayController.addScreenshot(url, fallback);
    m_trayController.updateSuggestion(itemID, fallback, true);
    m_trayController.markNaming(itemID);

    const QUrl current = m_trayController.fileURL(itemID).value_or(url);
    copyWhenComplete(itemID, current);
    suggestName(itemID, current);
}

/// What is copied is the screenshot where it lies at that moment, and whole: a tool may still be
/// writing it, and the row has renamed it.
void VelmoraApp::copyWhenComplete(const QUuid &itemID, const QUrl &url)
{
    const CopyBehavior behavior = VelmoraSettings::copyBehavior();
    if (behavior == CopyBehavior::none)
        return;
    whenFinished(m_images.completion(url), this, [this, itemID, url, behavior] {
        ClipboardWriter::copy(*m_platform.pasteboard,
                              m_trayController.fileURL(itemID).value_or(url), behavior);
    });
}

/// The row's file may have been taken back by the menu meanwhile, and another one have its place:
/// that one must not get the first one's name.
void VelmoraApp::suggestName(const QUuid &itemID, const QUrl &url)
{
    const std::optional<FileIdentity> read = fileIdentity(url.toLocalFile());
    const QFuture<QString> suggestion =
        m_namer.suggestFilename(url, m_activeApplication.lastActiveAppName());
    m_suggestions.insert(itemID, suggestion);
    whenFinished(suggestion, this, [this, itemID, read](const QString &filename) {
        m_suggestions.remove(itemID);
        const QUrl current = m_trayController.fileURL(itemID).value_or(QUrl());
        const std::optional<FileIdentity> there = fileIdentity(current.toLocalFile());
        if (!read || !there || there->sameFile(*read))
            m_trayController.updateSuggestion(itemID, filename, true);
    });
}

void VelmoraApp::connectMenu()
{
    connect(&m_statusMenu, &StatusMenu::showStatusRequested, this,
            [this] { m_welcome.showWelcome(m_folder.current()); });
    connect(&m_statusMenu, &StatusMenu::recentScreenshotsRequested, this,
            &VelmoraApp::showRecentScreenshots);
    connect(&m_statusMenu, &StatusMenu::undoRequested, this, &VelmoraApp::undoLastAction);
    connect(&m_statusMenu, &StatusMenu::instantModeRequested, &m_welcome,
            &WelcomeController::optimizeScreenshotSpeed);
    connect(&m_statusMenu, &StatusMenu::revealFolderRequested, this,
            [this] { m_platform.fileBrowser->reveal(m_folder.current()); });
    connect(&m_statusMenu, &StatusMenu::quitRequested, qApp, &QCoreApplication::quit,
            Qt::QueuedConnection);
    connect(&m_undoHistory, &UndoHistory::changed, this,
            [this] { m_statusMenu.setUndo(m_undoHistory.title(), m_undoHistory.canUndo()); });
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
    m_trayController.onRenamed = [this](const QUrl &url) { keep(url); };
    m_trayController.onRenameUndoable = [this](const QUrl &oldURL, const QUrl &newURL) {
        m_platform.pasteboard->fileMoved(oldURL, newURL);
        m_undoHistory.push(UndoableAction::rename(oldURL, newURL));
    };
    m_trayController.onTrashUndoable = [this](const QUrl &originalURL, const QUrl &trashedURL) {
        m_undoHistory.push(UndoableAction::trash(originalURL, trashedURL));
    };
    m_trayController.onUndoPerformed = [this](const UndoableAction &action, const QUrl &url) {
        m_platform.pasteboard->fileMoved(action.after, url);
        keep(url);
        m_undoHistory.remove(action);
    };
    // Nobody waits for its name any more.
    m_trayController.onRowGone = [this](const QUuid &itemID) {
        m_suggestions.take(itemID).cancel();
    };
}

/// The program itself has put the file there: it is no new screenshot, but a recent one.
void VelmoraApp::keep(const QUrl &url)
{
    m_watcher->ignore(url);
    m_recentScreenshots.add(url);
}

/// A program that is started for one of its actions opens what that one opens, and nothing else.
void VelmoraApp::perform(const QString &action)
{
    m_welcomeSoon.stop();
    m_statusMenu.trigger(action);
}

void VelmoraApp::undoLastAction()
{
    if (!m_undoHistory.canUndo())
        return;
    const UndoableAction action = m_undoHistory.actions().constLast();
    if (const std::optional<QUrl> restored = m_undoHistory.undoLast()) {
        m_platform.pasteboard->fileMoved(action.after, *restored);
        keep(*restored);
    }
}

void VelmoraApp::showRecentScreenshots()
{
    m_welcome.closeWelcome();
    m_recentWindow.show();
    m_recentWindow.window()->addActions(m_statusMenu.actions());
}
