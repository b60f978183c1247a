// SPDX-License-Identifier: MIT
#pragma once

#include "core/VelmoraSettings.h"
#include "platform/Pasteboard.h"

#include <QUrl>

/// Putting a screenshot on the clipboard. Each call writes one line to the log.
namespace ClipboardWriter
{

/// A screenshot as it is to be copied.
struct Contents {
    QUrl url;
    bool isMissing = false;
    PasteboardContents contents;
};

/// The picture, the file or both; nothing for `none`. The picture is there as the file's own bytes
/// under the type that its extension tells, and decoded for those who can't read that type. Any
/// thread; blocks.
Contents read(const QUrl &url, CopyBehavior behavior);

/// For a file that is not there, or not the one that was meant.
Contents missing(const QUrl &url);

/// Replaces the clipboard. False when nothing was put there: the behaviour was `none`, or a picture
/// alone was wanted and can't be read. A missing file is false too, and leaves the clipboard as it
/// is. Main thread; returns at once.
bool copy(Pasteboard &pasteboard, Contents read);

} // namespace ClipboardWriter
