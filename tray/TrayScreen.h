// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QScreen>

#include <optional>

class PanelWindow;

/// The screen on which the tray stands. Main thread; the service outlives it.
class TrayScreen : public QObject
{
    Q_OBJECT
public:
    explicit TrayScreen(const PanelWindow &panelWindow);

    /// Takes the screen where the user is working now.
    void choose();

    /// The part of the screen that no bar of the desktop covers; absent when there is no screen.
    std::optional<QRect> visibleFrame() const;

Q_SIGNALS:
    /// The visible frame has changed by itself: a bar has come or gone, or the screen has.
    void changed();

private:
    void screenRemoved(const QScreen *screen);

    const PanelWindow &m_panelWindow;
    QPointer<QScreen> m_screen;
};
