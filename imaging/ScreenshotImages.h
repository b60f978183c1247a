// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QImage>
#include <QSize>
#include <QUrl>

#include <memory>

class FileWriters;
class HeldScreenshot;
class PictureBudget;

/// The pixels of new screenshots: decoded once for all who need them, off the main thread, and not
/// before the file is complete.
///
/// Each request opens the file before it returns, so that the file may be renamed at once. The
/// request then waits, without blocking, until the last writer has closed the file, or until a
/// while after the picture was written to its end, at most `CompletionWait::limit`. Requests for a
/// file whose pixels are still here share them; only the newest few pictures are kept, and none for
/// long. The newest request is served first. All that is held or decoded at a time stays below
/// PictureBudget::ofScreenshots, so that some requests may have to wait until others are released.
/// Cancelling a future frees what is no longer needed.
///
/// Any thread. Destruction ends the waiting requests: their futures give null images.
class ScreenshotImages
{
public:
    explicit ScreenshotImages(FileWriters &writers);
    ~ScreenshotImages();

    /// The whole picture, or only the upper part of one with more than screenshotLimits.top pixels.
    /// A null image when it can't be read. Its memory counts in the budget of all pictures: release
    /// it soon.
    QFuture<QImage> image(const QUrl &file);

    /// The whole picture scaled down to fit into `bounds` (pixels), in its proportions; never
    /// scaled up. A null image when it can't be read.
    QFuture<QImage> thumbnail(const QUrl &file, QSize bounds);

    /// Finished when the file is complete or the wait is over.
    QFuture<void> completion(const QUrl &file);

    /// A file to be asked for later, whatever its name is then. Holds no pixels. Null when there is
    /// no regular file.
    using Held = std::shared_ptr<HeldScreenshot>;
    Held hold(const QUrl &file);

    QFuture<QImage> image(const Held &file);
    QFuture<QImage> thumbnail(const Held &file, QSize bounds);
    QFuture<void> completion(const Held &file);

    /// The budget that all these pictures share, for others who decode screenshots.
    const std::shared_ptr<PictureBudget> &budget() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
