// SPDX-License-Identifier: MIT
#include "app/welcome/WelcomeController.h"

#include "app/welcome/LoginItemController.h"
#include "app/welcome/WelcomeWindow.h"
#include "app/welcome/dialogs/chooseFolder.h"
#include "app/welcome/dialogs/explainOnce.h"
#include "app/welcome/feedbackMail.h"
#include "core/VelmoraSettings.h"
#include "detection/ScreenshotFolder.h"
#include "detection/ScreenshotSpeedOptimizer.h"
#include "platform/LoginItem.h"
#include "platform/ScreenshotPreferences.h"
#include "platform/SystemWords.h"

#include <QDesktopServices>

using namespace Qt::StringLiterals;

WelcomeController::WelcomeController(const Services &services, ScreenshotFolder &folder,
                                     QObject *parent)
    : QObject(parent), m_services(services), m_folder(folder)
{
}

WelcomeController::~WelcomeController() = default;

void WelcomeController::showWelcome(const QUrl &folder)
{
    if (!m_welcomeWindow) {
        const WelcomeState state = {
            .folder = folder,
            .instantModeOn =
                ScreenshotSpeedOptimizer::isAppleThumbnailDisabled(m_services.preferences),
            .startsAtLogin = m_services.loginItem.isEnabled(),
            .keyHasFixedFolder = m_services.preferences.keyHasFixedFolder(),
            .limits = m_services.limits,
        };
        m_welcomeWindow = std::make_unique<WelcomeWindow>(state);
        m_welcomeWindow->addActions(m_actions);
        connectWindow();
    }
    m_welcomeWindow->present();
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
    ScreenshotSpeedOptimizer::disableAppleThumbnail(m_services.preferences);
    rebuild(m_folder.current());
}

void WelcomeController::startAtLoginChanged(bool on)
{
    if (!on) {
        LoginItemController::setEnabled(m_services.loginItem, false);
        return;
    }
    const Explanation explanation = {
        .key = u"didExplainStartAtLogin"_s,
        .title = u"Start at login"_s,
        .message = SystemWords::startAtLogin.here(),
    };
    explainOnce(*m_welcomeWindow, explanation,
                [this] { LoginItemController::setEnabled(m_services.loginItem, true); });
}

void WelcomeController::changeScreenshotFolder()
{
    QString message = SystemWords::folderAccess.here();
    if (m_services.preferences.keyHasFixedFolder())
        message += u' ' + SystemWords::keyHasFixedFolder.here();
    const Explanation explanation = {
        .key = u"didExplainFolderAccess"_s,
        .title = u"Screenshot folder access"_s,
        .message = message,
    };
    explainOnce(*m_welcomeWindow, explanation, [this] {
        chooseFolder(*m_welcomeWindow, m_folder.current(),
                     [this](const QUrl &folder) { useFolder(folder); });
    });
}

void WelcomeController::useFolder(const QUrl &folder)
{
    m_folder.choose(folder);
    Q_EMIT folderChosen(folder);
    rebuild(folder);
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
        // The command to rebuild comes from a control of the old window, or from its dialog.
        m_welcomeWindow.release()->deleteLater();
    }
    showWelcome(folder);
}
