#include "files/recent/RecentThumbnails.h"

#include "core/whenFinished.h"
#include "imaging/ScreenshotImages.h"
#include "style/FileIcon.h"
#include "style/ImageView.h"

#include <QGuiApplication>

#include <algorithm>

namespace
{

constexpr qsizetype maximumKept = 20;

/// As many pixels as the screen with the finest ones needs.
QSize onFinestScreen(QSize points)
{
    return (QSizeF(points) * qGuiApp->devicePixelRatio()).toSize();
}

} // namespace

RecentThumbnails::RecentThumbnails(ScreenshotImages &images, QSize size)
    : m_images(images), m_size(size)
{
}

void RecentThumbnails::show(const QUrl &file, ImageView *view)
{
    const std::optional<FileIdentity> identity = fileIdentity(file.toLocalFile());
    const auto kept = std::find_if(m_kept.cbegin(), m_kept.cend(), [&](const Thumbnail &thumbnail) {
        return identity && thumbnail.file.sameContent(*identity);
    });
    if (kept != m_kept.cend() && !kept->image.isNull()) {
        view->setImage(kept->image);
        return;
    }
    const int iconSide = std::min(m_size.width(), m_size.height());
    view->setImage(fileIcon(file).pixmap(onFinestScreen({iconSide, iconSide}), 1.0).toImage());
    const bool isKnownToBeNone = kept != m_kept.cend();
    if (identity && !isKnownToBeNone)
        load(file, *identity, view);
}

void RecentThumbnails::load(const QUrl &file, const FileIdentity &identity, ImageView *view)
{
    QFuture<QImage> future = m_images.thumbnail(file, onFinestScreen(m_size));
    const QMetaObject::Connection cancelling =
        QObject::connect(view, &QObject::destroyed, [future]() mutable { future.cancel(); });
    whenFinished(future, view, [=, this](const QImage &image) {
        QObject::disconnect(cancelling);
        keep({identity, image});
        if (!image.isNull())
            view->setImage(image);
    });
}

void RecentThumbnails::keep(const Thumbnail &thumbnail)
{
    m_kept.removeIf(
        [&thumbnail](const Thumbnail &kept) { return kept.file.sameFile(thumbnail.file); });
    m_kept.append(thumbnail);
    if (m_kept.size() > maximumKept)
        m_kept.removeFirst();
}
