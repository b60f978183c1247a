// SPDX-License-Identifier: MIT
#include "platform/linux/status-item/edgedIcon.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace
{

/// The sizes that status bars ask for, and twice those for high-density screens.
constexpr int sizes[] = {16, 22, 24, 32, 44, 48, 64};

/// The edge is a 22nd of the icon wide.
constexpr int sizePerEdge = 22;

QPixmap silhouette(const QPixmap &picture)
{
    QPixmap result = picture;
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(result.rect(), Qt::white);
    return result;
}

QPixmap edged(const QIcon &icon, int size)
{
    const int edge = std::max(1, size / sizePerEdge);
    const QPixmap picture = icon.pixmap(QSize(size - 2 * edge, size - 2 * edge), 1.0);
    const QPixmap light = silhouette(picture);
    QPixmap result(size, size);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    for (int x = 0; x <= 2 * edge; ++x) {
        for (int y = 0; y <= 2 * edge; ++y)
            painter.drawPixmap(x, y, light);
    }
    painter.drawPixmap(edge, edge, picture);
    return result;
}

} // namespace

QIcon edgedIcon(const QIcon &icon)
{
    QIcon result;
    for (const int size : sizes)
        result.addPixmap(edged(icon, size));
    return result;
}
