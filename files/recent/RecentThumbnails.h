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

/// The thumbnails of the recent screenshots' window. The latest are kept, so that a rebuilt list
/// shows the files that remain in it at once. Main thread.
class RecentThumbnails
{
public:
    /// @param size of a thumbnail, in points
    RecentThumbnails(ScreenshotImages &images, QSize size);

    /// Shows the file's thumbnail in the view. At first that is the last one known for this file,
    /// or the file's icon, until the file has been checked and read in the background. A file that
    /// is not a picture keeps the icon. Never waits for the disk.
    void show(const QUrl &file, ImageView *view);

private:
    struct Thumbnail {
        QUrl url; ///< where it was last seen
        FileIdentity file;
        QImage image; ///< null if it has none; then it is not read again
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
