// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The thumbnails that file managers share, `thumbnails` in the cache folder, named by the file's
/// address. Any thread; blocks for the disk.
namespace ThumbnailCache
{

/// Removes the thumbnails of a file that has stood there, in every size. Nothing while something
/// stands there.
void forget(const QString &path);

} // namespace ThumbnailCache
