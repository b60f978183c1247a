// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/applications/FocusSource.h"
#include "platform/linux/wayland/WaylandConnection.h"

#include <memory>

/// The window with the focus on a Wayland desktop, in the best way that the desktop offers: what
/// its compositor tells every client, a script in KWin, else the X server within it, which knows
/// X11's windows only. Which it is turns out a moment after the start; until then, and where there
/// is no way, nothing is told. Main thread.
class WaylandFocusSource : public FocusSource
{
public:
    WaylandFocusSource();

    bool seesAllWindows() const override { return !m_source || m_source->seesAllWindows(); }
    void update() override;

private:
    void choose();
    void use(std::unique_ptr<FocusSource> source);

    WaylandConnection m_connection;
    std::unique_ptr<FocusSource> m_source;
};
