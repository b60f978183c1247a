// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QScreen>

#include <optional>

class PanelWindow;

/// The screen that the tray is on. Main thread; `panelWindow` must outlive it.
class TrayScreen : public QObject
{
    Q_OBJECT
public:
    explicit TrayScreen(const PanelWindow &panelWindow);

    /// Takes the screen where the user is working now.
    void choose();

    /// The part of the screen that no desktop bar covers; nothing if there is no screen.
    std::optional<QRect> visibleFrame() const;

Q_SIGNALS:
    /// The visible frame has changed on its own: a desktop bar has appeared or gone, or the screen
    /// has changed.
    void changed();

private:
    void screenRemoved(const QScreen *screen);

    const PanelWindow &m_panelWindow;
    QPointer<QScreen> m_screen;
};
