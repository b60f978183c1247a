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

    explicit Sway(X11 x11 = X11::No);
    ~Sway();
    Q_DISABLE_COPY_MOVE(Sway)

    static bool isInstalled();

    /// What WAYLAND_DISPLAY has to be for programs of this desktop.
    QString display() const;

    /// A folder that programs of this desktop may write to, too.
    QString folder() const { return m_folder.path(); }

    /// Runs one of sway's commands ("workspace 2", "exec xterm") and returns its answer.
    QString command(const QString &command) const;

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
    QString ipcSocket() const;
    QJsonDocument ask(const QString &type) const;

    QTemporaryDir m_folder;
    QProcess m_process;
};
