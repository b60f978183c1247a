// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QImage>
#include <QSize>
#include <QUrl>

#include <memory>

class FileWriters;
class HeldScreenshot;

/// The pixels of new screenshots, for everybody who needs them: decoded once, off the main thread,
/// and not before the file is complete.
///
/// Each request opens the file before it returns, so that the file may be renamed at once. Then it
/// waits, without blocking anybody, until the last writer has closed the file, or a while after it
/// has written the picture to its end, for at most `CompletionWait::limit`. Requests for a file
/// whose pixels are still here share them; only the newest few pictures are kept, and none for
/// long. The newest request is served first; all that is held or decoded at a time stays below
/// PictureBudget::ofScreenshots, so that some may have to wait for others to be let go. Cancelling
/// a future frees what is not needed any more.
///
/// Any thread. Destruction ends what waits: its futures give null images.
class ScreenshotImages
{
public:
    explicit ScreenshotImages(FileWriters &writers);
    ~ScreenshotImages();

    /// The picture as it is read: the whole of it, but only the upper part of one that has more
    /// than screenshotLimits.top pixels. A null image when it can't be read. What it holds counts
    /// in the budget of all pictures: let go of it soon.
    QFuture<QImage> image(const QUrl &file);

    /// The whole picture scaled down to fit into `bounds` (pixels), its proportions kept; never
    /// scaled up. A null image when it can't be read.
    QFuture<QImage> thumbnail(const QUrl &file, QSize bounds);

    /// Finished when the file is complete or the wait is over.
    QFuture<void> completion(const QUrl &file);

    /// A file that is to be asked for later, whatever its name is then. Holds no pixels. Null when
    /// there is no regular file.
    using Held = std::shared_ptr<HeldScreenshot>;
    Held hold(const QUrl &file);

    QFuture<QImage> image(const Held &file);
    QFuture<QImage> thumbnail(const Held &file, QSize bounds);
    QFuture<void> completion(const Held &file);

private:
    class Private;
    std::unique_ptr<Private> d;
};
