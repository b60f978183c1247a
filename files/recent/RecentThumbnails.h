#pragma once

#include "filesystem/OpenFile.h"

#include <QImage>
#include <QList>
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

    /// Shows the file's picture in the view: at once where it is known, else the file's icon until
    /// the picture has been read in the background. What is no picture keeps the icon.
    void show(const QUrl &file, ImageView *view);

private:
    struct Thumbnail {
        FileIdentity file;
        QImage image; ///< null where there is none: it is not looked for again
    };

    void load(const QUrl &file, const FileIdentity &identity, ImageView *view);
    void keep(const Thumbnail &thumbnail);

    ScreenshotImages &m_images;
    QSize m_size;
    /// Newest last.
    QList<Thumbnail> m_kept;
};
