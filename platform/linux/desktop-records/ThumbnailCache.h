// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The thumbnails that file managers share, `thumbnails` in the cache folder, named after the
/// file's URI. Any thread; blocks on the disk.
namespace ThumbnailCache
{

/// Removes the thumbnails, in every size, of a file that was at this path. Does nothing while there
/// is something at the path.
void forget(const QString &path);

} // namespace ThumbnailCache
