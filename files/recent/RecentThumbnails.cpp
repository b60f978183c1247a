// SPDX-License-Identifier: MIT
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

/// In pixels of the screen with the highest pixel density.
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
    const auto kept = std::find_if(m_kept.cbegin(), m_kept.cend(), [&file](const Thumbnail &each) {
        return each.url == file && !each.image.isNull();
    });
    const int iconSide = std::min(m_size.width(), m_size.height());
    view->setImage(
        kept != m_kept.cend()
            ? kept->image
            : fileIcon(file).pixmap(onFinestScreen({iconSide, iconSide}), 1.0).toImage());
    m_disk.add([this, file, view = QPointer(view)]() -> WorkQueue::Outcome {
        const std::optional<FileIdentity> identity = fileIdentity(file.toLocalFile());
        return [this, file, identity, view] {
            if (view && identity)
                showFile({file, *identity, {}}, view);
        };
    });
}

void RecentThumbnails::showFile(const Thumbnail &file, ImageView *view)
{
    const auto kept = std::find_if(m_kept.begin(), m_kept.end(), [&file](const Thumbnail &each) {
        return each.file.sameContent(file.file);
    });
    if (kept == m_kept.end()) {
        open(file, view);
        return;
    }
    kept->url = file.url;
    if (!kept->image.isNull())
        view->setImage(kept->image);
}

void RecentThumbnails::open(const Thumbnail &file, const QPointer<ImageView> &view)
{
    m_disk.add([this, file, view]() -> WorkQueue::Outcome {
        const ScreenshotImages::Held held = m_images.hold(file.url);
        return [this, file, held, view] {
            if (view)
                load(file, m_images.thumbnail(held, onFinestScreen(m_size)), view);
        };
    });
}

void RecentThumbnails::load(const Thumbnail &file, QFuture<QImage> future, ImageView *view)
{
    const QMetaObject::Connection cancelling =
        QObject::connect(view, &QObject::destroyed, [future]() mutable { future.cancel(); });
    whenFinished(future, view, [=, this](const QImage &image) {
        QObject::disconnect(cancelling);
        keep({file.url, file.file, image});
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
