// SPDX-License-Identifier: MIT
#pragma once

#include "tests/world/Sway.h"
#include "tests/world/WaylandPointer.h"

#include <QImage>
#include <QProcess>
#include <QRect>
#include <QTemporaryDir>

#include <functional>
#include <memory>

/// A program with a tray on a wlroots desktop, beside a terminal that has the keyboard.
class TrayOnSwayFixture
{
protected:
    static constexpr int patience = 20000;

    /// The size of the headless screen.
    static constexpr QSize screenSize = {1280, 720};
    static constexpr QRect secondScreen = {1280, 0, 1280, 720};

    /// @param settings more lines of sway's settings
    void begin(Sway::X11 x11, const QByteArray &settings = {},
               Sway::Screens screens = Sway::Screens::Nowhere);
    void end();

    /// Ends the tray's program and starts another one.
    void restartTray();

    /// Says how large the desktop is when it has several screens; the mouse has to know.
    void setDesktopSize(QSize size);

    /// In the corner at the bottom right of the screen, or of the part above a bar.
    static QRect trayPlace(int rows, const QRect &screen = {{0, 0}, screenSize});

    // In the row at the top.
    static QPoint thumbnailIn(const QRect &tray) { return tray.topLeft() + QPoint(62, 44); }
    static QPoint nameIn(const QRect &tray) { return tray.topLeft() + QPoint(200, 56); }
    static QPoint copyButtonIn(const QRect &tray) { return tray.topLeft() + QPoint(476, 44); }
    static QPoint dismissButtonIn(const QRect &tray) { return tray.topLeft() + QPoint(588, 44); }

    /// Two screens side by side of this kind, of which the second one is added later.
    static QByteArray screenSettings(const QByteArray &kind);
    void addSecondScreen(const QString &kind);

    /// What the screen shows.
    QImage photograph() const;

    /// @param scale of the screen, which the place does not include
    bool isSeenAt(const QRect &place, int scale = 1) const;

    /// Whether it is there for the next half second, too.
    bool staysAt(const QRect &place, int scale = 1) const;

    /// Asserts that the tray is there, and that a click dismisses its newest row.
    void worksAt(const QRect &place);

    /// Types the text and a return. The keyboard is there before the action: when a new one comes,
    /// sway gives it to the window that it calls focused, and that is never the tray.
    void typeLineAfter(const std::function<void()> &act, const QString &text) const;

    /// The same, but types when `isReady` and does not rely on time.
    void typeLineWhen(const std::function<bool()> &isReady, const std::function<void()> &act,
                      const QString &text) const;

    bool terminalHasKeyboard() const { return m_sway->focusedApplication() == u"terminal"; }

    /// The lines that the terminal has got.
    QString typed() const;

    /// Whether the tray's program has printed this, a file's new name for example.
    bool hasPrinted(const char *word);
    bool trayHasKeyboard();

    std::unique_ptr<Sway> m_sway;
    QProcess m_tray;
    std::unique_ptr<WaylandPointer> m_pointer;

private:
    void startTray(Sway::X11 x11);

    QTemporaryDir m_folder;
    QProcess m_terminal;
    QByteArray m_output;
};
