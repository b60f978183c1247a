// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QWindow>

/// The X desktop of a test's world, worked as a user works it: with xdotool and xprop. A call goes
/// on handling this program's own events while it waits.
namespace XDesktop
{

/// Runs a program to its end and returns what it wrote, trimmed.
QString run(const QString &program, const QStringList &arguments);

/// What xprop says of a window's property after its name.
QString property(WId window, const QString &name);

/// 0 when none is.
WId activeWindow();

/// Points of the screen.
void movePointer(QPoint place);
void click(QPoint place);

void type(const QString &text);
/// xdotool's names, for instance "ctrl+a".
void pressKey(const QString &key);

} // namespace XDesktop

/// Another program that wants the keyboard: an xterm that writes what is typed into it to a file.
class Terminal
{
public:
    explicit Terminal(const QString &typedInto);
    ~Terminal();

    WId window() const { return m_window; }
    void activate() const;
    bool isActive() const { return XDesktop::activeWindow() == m_window; }
    /// Whether what is typed goes there, whatever the window manager says is active.
    bool hasKeyboard() const;

private:
    QProcess m_process;
    WId m_window = 0;
};
