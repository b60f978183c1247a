// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/CornerPlace.h"

CornerPlace CornerPlace::of(const QRect &frame, const QRect &screen)
{
    const int left = frame.left() - screen.left();
    const int top = frame.top() - screen.top();
    const int right = screen.right() - frame.right();
    const int bottom = screen.bottom() - frame.bottom();
    CornerPlace place;
    place.size = frame.size();
    place.isAtLeft = right < 0 || left <= right;
    place.isAtTop = bottom < 0 || (top >= 0 && top < bottom);
    place.fromSide = place.isAtLeft ? left : right;
    place.fromEnd = place.isAtTop ? top : bottom;
    return place;
}

QRect CornerPlace::on(const QRect &screen) const
{
    QRect frame(screen.topLeft() + QPoint(fromSide, fromEnd), size);
    if (!isAtLeft)
        frame.moveRight(screen.right() - fromSide);
    if (!isAtTop)
        frame.moveBottom(screen.bottom() - fromEnd);
    return frame;
}
