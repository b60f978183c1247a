// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

/// A place by its distances from the edges of a screen, whichever screen that will be.
struct CornerPlace {
    QSize size;
    bool isAtTop = false;
    bool isAtLeft = false;
    /// From the left edge if it is at the left, otherwise from the right one; likewise below.
    int fromSide = 0;
    int fromEnd = 0;

    /// That of a rectangle on a screen: from the nearest edges that it does not exceed.
    static CornerPlace of(const QRect &frame, const QRect &screen);

    /// The rectangle at this place on a screen.
    QRect on(const QRect &screen) const;

    bool operator==(const CornerPlace &) const = default;
};
