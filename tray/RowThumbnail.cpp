// SPDX-License-Identifier: MIT
#include "tray/RowThumbnail.h"

#include "core/whenFinished.h"
#include "imaging/ScreenshotImages.h"
#include "style/FileIcon.h"
#include "tray/DraggableImageView.h"

#include <QGuiApplication>

namespace
{

/// Enough pixels for any screen that the row may appear on.
QSize pixelsOf(QSize points)
{
    return points * qGuiApp->devicePixelRatio();
}

} // namespace

RowThumbnail::RowThumbnail(DraggableImageView &view, const ScreenshotPointer &screenshot,
                           ScreenshotImages &images)
    : m_view(view), m_screenshot(screenshot), m_images(images)
{
    const QSize pixels = pixelsOf(m_view.size());
    m_view.setImage(fileIcon(m_screenshot->url()).pixmap(pixels, 1).toImage());
    m_screenshot->whenOpened(&m_view, [this] { load(Unreadable::LeavesNoImage); });
}

void RowThumbnail::reload()
{
    load(Unreadable::KeepsTheImage);
}

void RowThumbnail::load(Unreadable unreadable)
{
    const int request = ++m_request;
    whenFinished(m_images.thumbnail(m_screenshot->held(), pixelsOf(m_view.size())), &m_view,
                 [this, request, unreadable](const QImage &image) {
                     const bool isNewest = request == m_request;
                     if (isNewest && (!image.isNull() || unreadable == Unreadable::LeavesNoImage))
                         m_view.setImage(image);
                 });
}
