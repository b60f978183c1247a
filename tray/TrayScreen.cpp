// SPDX-License-Identifier: MIT
#include "tray/TrayScreen.h"

#include "platform/PanelWindow.h"

#include <QGuiApplication>

TrayScreen::TrayScreen(const PanelWindow &panelWindow) : m_panelWindow(panelWindow)
{
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &TrayScreen::screenRemoved);
    connect(&panelWindow, &PanelWindow::visibleFrameChanged, this, &TrayScreen::changed);
    choose();
}

void TrayScreen::choose()
{
    QScreen *const screen = m_panelWindow.screen();
    if (screen == m_screen)
        return;
    if (m_screen)
        disconnect(m_screen, nullptr, this, nullptr);
    m_screen = screen;
    if (m_screen)
        connect(m_screen, &QScreen::availableGeometryChanged, this, &TrayScreen::changed);
}

std::optional<QRect> TrayScreen::visibleFrame() const
{
    return m_screen ? std::optional(m_panelWindow.visibleFrame(*m_screen)) : std::nullopt;
}

/// Queued, because the remaining screens are only known after this event.
void TrayScreen::screenRemoved(const QScreen *screen)
{
    if (screen != m_screen)
        return;
    const auto moveOn = [this] {
        choose();
        Q_EMIT changed();
    };
    QMetaObject::invokeMethod(this, moveOn, Qt::QueuedConnection);
}
