// SPDX-License-Identifier: MIT
#pragma once

#include "files/WorkQueue.h"
#include "filesystem/OpenFile.h"

#include <QFuture>
#include <QImage>
#include <QList>
#include <QPointer>
#include <QSize>
#include <QUrl>

class ImageView;
class ScreenshotImages;

/// The small pictures of the recent screenshots' window. Those shown last are kept, so that a list
/// that is made anew shows the files that stay at once. Main thread.
class RecentThumbnails
{
public:
    /// @param size of a picture, in points
    RecentThumbnails(ScreenshotImages &images, QSize size);

    /// Shows the file's picture in the view: at once the one that was here last, or else the file's
    /// icon, until the file has been looked at and read in the background. What is no picture keeps
    /// the icon. The disk is never waited for.
    void show(const QUrl &file, ImageView *view);

private:
    struct Thumbnail {
        QUrl url; ///< where it was last
        FileIdentity file;
        QImage image; ///< null where there is none: it is not looked for again
    };

    void showFile(const Thumbnail &file, ImageView *view);
    void open(const Thumbnail &file, const QPointer<ImageView> &view);
    void load(const Thumbnail &file, QFuture<QImage> future, ImageView *view);
    void keep(const Thumbnail &thumbnail);

    ScreenshotImages &m_images;
    QSize m_size;
    /// Newest last.
    QList<Thumbnail> m_kept;
    WorkQueue m_disk;
};
