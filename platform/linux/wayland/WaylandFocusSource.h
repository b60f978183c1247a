// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/applications/FocusSource.h"
#include "platform/linux/wayland/WaylandConnection.h"

#include <memory>

/// The window with the focus on a Wayland desktop, by the best way that the desktop offers: what
/// its compositor reports to every client, a script in KWin, or else its X server, which knows X11
/// windows only. The way is found a moment after the start; until then, and when there is none,
/// nothing is reported. Main thread.
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
