// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <system_error>

/// Moves a file (or a link, or a folder on the same file system) and never overwrites: an existing
/// destination gives `std::errc::file_exists` and changes nothing. A link itself is moved, not its
/// target; modification time, permissions and extended attributes stay as they are.
///
/// Within one file system the move is one atomic step. Where the file system has no such step, a
/// hard link or a placeholder file keeps others from being overwritten. To another file system, a
/// regular file or link is copied, flushed to the disk and compared in size before the source is
/// removed. A failure leaves the source whole and no partial copy behind.
///
/// @return the system's error, or none. Any thread; blocks.
std::error_code moveFile(const QUrl &source, const QUrl &destination);
