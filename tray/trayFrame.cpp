// SPDX-License-Identifier: MIT
#include "tray/trayFrame.h"

#include <algorithm>

QRect trayFrame(const QRect &available, int rows, TrayPosition position)
{
    using namespace TrayMeasures;
    const int height = rowHeight * rows + rowSpacing * (std::max(rows, 1) - 1) + 2 * inset;

    // Distances of the tray from the left and bottom edges of the available area.
    const int farthestRight = available.width() - width - screenMargin;
    const int farthestUp = available.height() - height - screenMargin;
    const bool right = position == TrayPosition::bottomRight || position == TrayPosition::topRight;
    const bool top = position == TrayPosition::topRight || position == TrayPosition::topLeft;
    const int x =
        std::max(screenMargin, right ? farthestRight : std::min(farthestRight, screenMargin));
    const int y = std::max(screenMargin, top ? farthestUp : std::min(farthestUp, screenMargin));

    return {available.x() + x, available.y() + available.height() - y - height, width, height};
}
