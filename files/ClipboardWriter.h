// SPDX-License-Identifier: MIT
#pragma once

#include "core/VelmoraSettings.h"
#include "platform/Pasteboard.h"

#include <QUrl>

/// Copies a screenshot to the clipboard. Each call of copy() writes one line to the log.
namespace ClipboardWriter
{

/// A screenshot that is ready to be copied.
struct Contents {
    QUrl url;
    bool isMissing = false;
    PasteboardContents contents;
};

/// The picture, the file or both; nothing for `none`. The picture consists of the file's own bytes,
/// under the type of its extension, and a decoded picture for programs that cannot read that type.
/// Any thread; blocks.
Contents read(const QUrl &url, CopyBehavior behavior);

/// For a file that does not exist, or is not the intended one.
Contents missing(const QUrl &url);

/// Replaces the clipboard. False if nothing was copied: the behaviour was `none`, only a picture
/// was wanted and it cannot be read, or the desktop has not taken it. Also false for a missing
/// file; then the clipboard is unchanged. Main thread; returns at once.
bool copy(Pasteboard &pasteboard, Contents read);

} // namespace ClipboardWriter
