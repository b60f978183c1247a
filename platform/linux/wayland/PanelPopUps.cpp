// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/PanelPopUps.h"

#include "platform/linux/wayland/LayerShell.h"
#include "platform/linux/wayland/LayerSurface.h"
#include "platform/linux/wayland/PopUpSurface.h"
#include "platform/linux/wayland/qtWayland.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

PanelPopUps::PanelPopUps(const LayerShell &shell, LayerSurface &panel, const QWindow &window)
    : m_shell(shell), m_panel(panel), m_window(window)
{
    qGuiApp->installEventFilter(this);
}

/// Those opened last go first: compositors want children to go before their parents.
PanelPopUps::~PanelPopUps()
{
    qGuiApp->removeEventFilter(this);
    while (!m_popUps.empty()) {
        QWindow &window = *m_popUps.back().window;
        window.close();
        forget(window);
    }
}

bool PanelPopUps::hasMenu() const
{
    return std::any_of(m_popUps.begin(), m_popUps.end(),
                       [](const PopUp &each) { return each.window->type() == Qt::Popup; });
}

/// When a window is about to be shown for the first time, its surface exists and has no role yet.
bool PanelPopUps::eventFilter(QObject *receiver, QEvent *event)
{
    if (event->type() == QEvent::Show && receiver->isWindowType()) {
        auto &window = static_cast<QWindow &>(*receiver);
        if (isOfPanel(window))
            show(window);
    } else if (event->type() == QEvent::ToolTip && receiver->isWidgetType()) {
        // The one of another widget would stay where it is, with the new text.
        if (m_explained != receiver)
            closeToolTip();
        m_explained = receiver;
    }
    return false;
}

bool PanelPopUps::isOfPanel(const QWindow &window) const
{
    if (window.type() != Qt::ToolTip && window.type() != Qt::Popup)
        return false;
    const QWindow *parent = window.transientParent();
    while (parent && parent != &m_window)
        parent = parent->transientParent();
    return parent;
}

PopUpSurface *PanelPopUps::surfaceOf(const QWindow *window) const
{
    const auto found = std::find_if(m_popUps.begin(), m_popUps.end(),
                                    [&](const PopUp &each) { return each.window == window; });
    return found == m_popUps.end() ? nullptr : found->surface.get();
}

void PanelPopUps::show(QWindow &window)
{
    wl_surface *const surface = qtWayland::surface(window);
    // Without a surface, Qt shows the window as an ordinary one.
    window.setFlag(Qt::BypassWindowManagerHint, surface);
    if (!surface || surfaceOf(&window))
        return;
    const QWindow *const parent = window.transientParent();
    const PopUpSurface *const parentSurface = surfaceOf(parent);
    auto &popUp =
        *m_popUps.emplace_back(PopUp{&window, std::make_unique<PopUpSurface>(m_shell, surface)})
             .surface;
    // Queued, because Qt is just showing it. Not with the window as receiver: a widget's window
    // passes queued calls on to the widget.
    const auto close = [&window] { window.close(); };
    connect(&popUp, &PopUpSurface::closed, &popUp, close, Qt::QueuedConnection);
    connect(&popUp, &PopUpSurface::closed, this, &PanelPopUps::dismissed);
    connect(&window, &QWindow::visibleChanged, &popUp, [this, &window](bool isVisible) {
        if (!isVisible)
            forget(window);
    });
    popUp.appear(window.geometry().translated(-parent->position()), m_panel, parentSurface,
                 window.type() == Qt::Popup ? PopUpSurface::Input::Grabbed
                                            : PopUpSurface::Input::Ignored);
}

void PanelPopUps::forget(const QWindow &window)
{
    const auto found = std::find_if(m_popUps.begin(), m_popUps.end(),
                                    [&](const PopUp &each) { return each.window == &window; });
    if (found != m_popUps.end())
        m_popUps.erase(found);
}

void PanelPopUps::closeToolTip()
{
    const auto found = std::find_if(m_popUps.begin(), m_popUps.end(), [](const PopUp &each) {
        return each.window->type() == Qt::ToolTip;
    });
    if (found != m_popUps.end())
        found->window->close();
}
