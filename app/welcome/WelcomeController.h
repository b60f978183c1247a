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

    /// Brings the window to the front. When there is none, builds one that shows the current state;
    /// an existing one is shown as it is.
    void showWelcome(const QUrl &folder);

    /// Hides the window, which stays as it is, and ends its dialogs.
    void closeWelcome();

    /// Switches the system's own thumbnail delay off, and shows a fresh window.
    void optimizeScreenshotSpeed();

Q_SIGNALS:
    /// The user has chosen another screenshot folder, and it has been stored for the system.
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
