#pragma once

#include "core/VelmoraSettings.h"

#include <QUrl>

class Pasteboard;

/// Putting a screenshot on the clipboard. Each call writes one line to the log.
namespace ClipboardWriter
{

/// Replaces the clipboard by the picture, the file or both; by nothing for `none`. The picture is
/// there as the file's own bytes under the type that its extension tells, and decoded for those who
/// can't read that type.
///
/// False when nothing was put there: the behaviour is `none`, or a picture alone was wanted and
/// can't be read. A missing file is false too, and leaves the clipboard as it is. Main thread.
bool copy(Pasteboard &pasteboard, const QUrl &url, CopyBehavior behavior);

} // namespace ClipboardWriter
