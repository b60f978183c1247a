// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QWindow>

/// The X desktop of a test's world, used the way a user does: through xdotool and xprop. Calls keep
/// handling this program's own events while they wait.
namespace XDesktop
{

/// Runs a program to its end and returns its output, trimmed.
QString run(const QString &program, const QStringList &arguments);

/// xprop's output for a window's property, without the name.
QString property(WId window, const QString &name);

/// Where the server has the window, on the screen.
QRect placeOf(WId window);

/// 0 when no window is active.
WId activeWindow();

/// In points of the screen.
void movePointer(QPoint place);
void click(QPoint place);

void type(const QString &text);
/// By xdotool's names, for instance "ctrl+a".
void pressKey(const QString &key);

} // namespace XDesktop

/// Another program that wants the keyboard: an xterm that writes typed text to a file.
class Terminal
{
public:
    explicit Terminal(const QString &typedInto);
    ~Terminal();

    WId window() const { return m_window; }
    void activate() const;
    bool isActive() const { return XDesktop::activeWindow() == m_window; }
    /// Whether typed text goes there, whatever window the window manager calls active.
    bool hasKeyboard() const;

private:
    QProcess m_process;
    WId m_window = 0;
};
