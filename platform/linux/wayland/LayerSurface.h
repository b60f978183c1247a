// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/wayland/CornerPlace.h"

#include <QObject>

class LayerShell;
struct wl_output;
struct wl_surface;
struct xdg_popup;
struct zwlr_layer_surface_v1;

/// Makes a surface a panel in a corner of the screen, above all other windows. Main thread; destroy
/// it before the surface.
class LayerSurface : public QObject
{
    Q_OBJECT
public:
    enum class Keyboard {
        Never,
        Now,     ///< takes it away from other programs
        ByClick, ///< only where LayerShell::movesKeyboardByClick()
    };

    /// @param output its screen, or null for the one that the compositor chooses
    LayerSurface(const LayerShell &shell, wl_surface *surface, wl_output *output);
    ~LayerSurface() override;

    /// Clear of the bars at the screen's edges, if the compositor knows them. A new size counts
    /// with the surface's next content, a new place at once.
    void setPlace(const CornerPlace &place);

    /// Counts at once.
    void setKeyboard(Keyboard keyboard);

    /// Waits until the surface may be shown. False when the compositor has no place for it.
    bool appear();

    /// Makes this panel the parent of a pop-up that is not shown yet.
    void adopt(xdg_popup *popUp);

Q_SIGNALS:
    /// The panel is not shown any more, for example because its screen is gone. It does not come
    /// back.
    void closed();

private:
    const LayerShell &m_shell;
    wl_surface *m_surface;
    zwlr_layer_surface_v1 *m_role;
    CornerPlace m_place;
    Keyboard m_keyboard = Keyboard::Never;
    bool m_isConfigured = false;
    bool m_isClosed = false;
    bool m_isAnswered = false;
};
