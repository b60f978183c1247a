// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A real Wayland desktop without a screen: sway, beside the X desktop of the test's world. It ends
/// when this object is destroyed. Where the test runs as root, an ordinary user runs sway.
class Sway
{
public:
    enum class X11 { No, Yes };
    enum class Screens {
        Nowhere, ///< named HEADLESS-1 and so on; they can't go away
        Windows, ///< named X11-1 and so on, on the X desktop of the test's world
    };

    /// @param settings more lines of sway's settings
    explicit Sway(X11 x11 = X11::No, const QByteArray &settings = {},
                  Screens screens = Screens::Nowhere);
    ~Sway();
    Q_DISABLE_COPY_MOVE(Sway)

    static bool isInstalled();

    /// What WAYLAND_DISPLAY has to be for programs of this desktop.
    QString display() const;

    /// What SWAYSOCK has to be for programs of this desktop.
    QString ipcSocket() const;

    /// A folder that programs of this desktop may write to, too.
    QString folder() const { return m_folder.path(); }

    /// Runs one of sway's commands ("workspace 2", "exec xterm") and returns its answer.
    QString command(const QString &command) const;

    /// Closes the window that is this screen, for which that is like being unplugged.
    static void unplug(const QString &screen);

    /// All outputs, workspaces and windows.
    QJsonObject tree() const;

    /// Whether a keyboard is connected. The desktop begins without any.
    bool hasKeyboard() const;

    /// The application id of the window that sway itself calls focused; empty for an X11 window
    /// and when there is none.
    QString focusedApplication() const;

    /// Runs a program on this desktop to its end and returns its output.
    QByteArray run(const QString &program, const QStringList &arguments) const;

    /// Starts a program on this desktop.
    void start(QProcess &process, const QString &program, const QStringList &arguments) const;

private:
    QJsonDocument ask(const QString &type) const;

    QTemporaryDir m_folder;
    QProcess m_process;
};
