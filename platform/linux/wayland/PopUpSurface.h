// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QRect>

class LayerShell;
class LayerSurface;
struct wl_surface;
struct xdg_popup;
struct xdg_surface;

/// Makes a surface a pop-up of a panel, or of another pop-up. Main thread; destroy it before the
/// surface and before its parent.
class PopUpSurface : public QObject
{
    Q_OBJECT
public:
    enum class Input {
        Ignored, ///< the mouse goes through it
        Grabbed, ///< a click elsewhere closes it
    };

    PopUpSurface(const LayerShell &shell, wl_surface *surface);
    ~PopUpSurface() override;

    /// Waits until the surface may be shown.
    /// @param place relative to the parent; where it would leave the screen, it is moved
    /// @param parent another pop-up, or null for the panel itself
    bool appear(const QRect &place, LayerSurface &panel, const PopUpSurface *parent, Input input);

Q_SIGNALS:
    /// The compositor has closed it.
    void closed();

private:
    const LayerShell &m_shell;
    wl_surface *m_surface;
    xdg_surface *m_role;
    xdg_popup *m_popUp = nullptr;
    bool m_isConfigured = false;
};
