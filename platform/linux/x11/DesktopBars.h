// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Properties.h"

#include <QRect>

#include <optional>

class X11Connection;

/// The desktop's bars (panels, docks), which keep an edge of a screen for themselves. For desktops
/// with several screens: most window managers report one work area for all of them, so that for Qt
/// a bar on one screen takes room on the others, too. Main thread; the connection must outlive it.
class DesktopBars
{
public:
    explicit DesktopBars(X11Connection &x11);

    /// The part of this screen that no bar keeps for itself, in device pixels. Nothing if the
    /// desktop reports neither that nor any bar. Asks the server on each call, in a few round
    /// trips.
    std::optional<QRect> freePart(const QRect &screen) const;

private:
    std::optional<QRect> reportedPart(const QRect &screen) const;

    X11Connection &m_x11;
    mutable X11Properties m_properties;
};
