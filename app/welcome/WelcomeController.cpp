#include "app/welcome/WelcomeController.h"

#include "app/welcome/LoginItemController.h"
#include "app/welcome/WelcomeWindow.h"
#include "app/welcome/explainOnce.h"
#include "app/welcome/feedbackMail.h"
#include "core/VelmoraSettings.h"
#include "detection/ScreenshotFolderResolver.h"
#include "detection/ScreenshotSpeedOptimizer.h"
#include "platform/Platform.h"

#include <QDesktopServices>
#include <QFileDialog>

#include <optional>

namespace
{

std::optional<QUrl> chooseFolder(const QUrl &start, QWidget *parent)
{
    QFileDialog panel(parent, QStringLiteral("Choose Screenshot Folder"));
    panel.setFileMode(QFileDialog::Directory);
    panel.setOption(QFileDialog::ShowDirsOnly);
    panel.setLabelText(QFileDialog::Accept, QStringLiteral("Use Folder"));
    panel.setWindowFlag(Qt::WindowStaysOnTopHint);
    panel.setDirectoryUrl(start);
    if (panel.exec() != QDialog::Accepted || panel.selectedUrls().isEmpty())
        return std::nullopt;
    return panel.selectedUrls().constFirst();
}

} // namespace

WelcomeController::WelcomeController(const Platform &platform, QObject *parent)
    : QObject(parent), m_platform(platform)
{
}

WelcomeController::~WelcomeController() = default;

void WelcomeController::showWelcome(const QUrl &folder)
{
    if (!m_welcomeWindow) {
        const WelcomeState state = {
            .folder = folder,
            .instantModeOn = ScreenshotSpeedOptimizer::isAppleThumbnailDisabled(
                *m_platform.screenshotPreferences),
            .startsAtLogin = m_platform.loginItem->isEnabled(),
        };
        m_welcomeWindow = std::make_unique<WelcomeWindow>(state);
        m_welcomeWindow->addActions(m_actions);
        connectWindow();
    }
    m_welcomeWindow->setWindowState(m_welcomeWindow->windowState() & ~Qt::WindowMinimized);
    m_welcomeWindow->show();
    m_welcomeWindow->raise();
    m_welcomeWindow->activateWindow();
}

void WelcomeController::closeWelcome()
{
    if (m_welcomeWindow)
        m_welcomeWindow->hide();
}

void WelcomeController::connectWindow()
{
    WelcomeWindow *window = m_welcomeWindow.get();
    connect(window, &WelcomeWindow::instantModeRequested, this,
            &WelcomeController::optimizeScreenshotSpeed);
    connect(window, &WelcomeWindow::startAtLoginChanged, this,
            &WelcomeController::startAtLoginChanged);
    connect(window, &WelcomeWindow::changeFolderRequested, this,
            &WelcomeController::changeScreenshotFolder);
    connect(window, &WelcomeWindow::feedbackRequested, this, &WelcomeController::sendFeedback);
    connect(window, &WelcomeWindow::doneRequested, this, &WelcomeController::closeWelcome);
    connect(window, &WelcomeWindow::recentScreenshotsRequested, this,
            &WelcomeController::recentScreenshotsRequested);
    connect(window, &WelcomeWindow::copyBehaviorPicked, this, [](int index) {
        VelmoraSettings::setCopyBehavior(VelmoraSettings::copyBehaviorAt(index));
    });
    connect(window, &WelcomeWindow::trayDurationPicked, this, [](int index) {
        VelmoraSettings::setTrayDuration(VelmoraSettings::trayDurationAt(index));
    });
    connect(window, &WelcomeWindow::trayPositionPicked, this, [this](int index) {
        VelmoraSettings::setTrayPosition(VelmoraSettings::trayPositionAt(index));
        Q_EMIT trayPositionChanged();
    });
}

void WelcomeController::optimizeScreenshotSpeed()
{
    ScreenshotSpeedOptimizer::disableAppleThumbnail(*m_platform.screenshotPreferences);
    rebuild(ScreenshotFolderResolver::currentScreenshotFolder(*m_platform.screenshotPreferences));
}

void WelcomeController::startAtLoginChanged(bool on)
{
    if (on) {
        explainOnce(QStringLiteral("didExplainStartAtLogin"), QStringLiteral("Start at login"),
                    QStringLiteral("Velmora will ask macOS to open it when you sign in. You can "
                                   "turn this off here anytime."),
                    m_welcomeWindow.get());
    }
    LoginItemController::setEnabled(*m_platform.loginItem, on);
}

void WelcomeController::changeScreenshotFolder()
{
    explainOnce(QStringLiteral("didExplainFolderAccess"),
                QStringLiteral("Screenshot folder access"),
                QStringLiteral("Choose the folder where macOS saves screenshots. Velmora watches "
                               "only that folder so it can rename new screenshots."),
                m_welcomeWindow.get());
    const QUrl current =
        ScreenshotFolderResolver::currentScreenshotFolder(*m_platform.screenshotPreferences);
    const std::optional<QUrl> chosen = chooseFolder(current, m_welcomeWindow.get());
    if (!chosen)
        return;
    ScreenshotFolderResolver::setScreenshotFolder(*m_platform.screenshotPreferences, *chosen);
    Q_EMIT folderChosen(*chosen);
    rebuild(*chosen);
}

void WelcomeController::sendFeedback()
{
    QDesktopServices::openUrl(feedbackMail());
}

/// The window is a snapshot: a new state needs a new window.
void WelcomeController::rebuild(const QUrl &folder)
{
    if (m_welcomeWindow) {
        m_welcomeWindow->hide();
        // The command that rebuilds comes from a control of the old window.
        m_welcomeWindow.release()->deleteLater();
    }
    showWelcome(folder);
}
