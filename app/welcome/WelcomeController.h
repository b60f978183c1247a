// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QUrl>

#include <memory>

class DesktopLimits;
class LoginItem;
class QAction;
class ScreenshotFolder;
class ScreenshotPreferences;
class WelcomeWindow;
struct WelcomeState;

/// The welcome window while it exists, and the commands that it triggers. Main thread.
class WelcomeController : public QObject
{
    Q_OBJECT
public:
    struct Services {
        ScreenshotPreferences &preferences;
        LoginItem &loginItem;
        const DesktopLimits &limits;
    };
    WelcomeController(const Services &services, ScreenshotFolder &folder,
                      QObject *parent = nullptr);
    ~WelcomeController() override;

    /// The actions whose shortcuts work in the window.
    void setActions(const QList<QAction *> &actions) { m_actions = actions; }

    /// Brings the window to the front. It is built when there is none, and then shows the state of
    /// that moment; an existing one is shown as it is.
    void showWelcome(const QUrl &folder);

    /// Hides the window, which stays as it is; its dialogs end.
    void closeWelcome();

    /// Switches the system's own thumbnail delay off, and shows a fresh window.
    void optimizeScreenshotSpeed();

Q_SIGNALS:
    /// The user has chosen another screenshot folder, and the system has been told.
    void folderChosen(const QUrl &folder);
    void trayPositionChanged();
    void recentScreenshotsRequested();

private:
    void startAtLoginChanged(bool on);
    void changeScreenshotFolder();
    void useFolder(const QUrl &folder);
    void sendFeedback();
    void rebuild(const QUrl &folder);
    void connectWindow();

    const Services m_services;
    ScreenshotFolder &m_folder;
    QList<QAction *> m_actions;
    std::unique_ptr<WelcomeWindow> m_welcomeWindow;
};
