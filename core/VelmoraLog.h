// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

/// The program's only diagnostic output: one timestamped line an event, in UTF-8, appended to a
/// plain text file. Nothing is escaped, rotated or truncated.
///
/// Every failure is swallowed: the line is lost and nothing else. Any thread.
namespace VelmoraLog
{

/// Appends a line to "/tmp/Velmora.log" with the time of the call. Never waits for the disk: a
/// thread of the log's own opens the file, appends and closes it for each line, at once and in the
/// order of the calls. Lines are lost only with a process that is killed in that moment, and where
/// the disk does not answer.
void write(const QString &message);

/// Whether all lines have been written, or have been within this time.
bool waitUntilWritten(std::chrono::milliseconds longestWait);

/// Appends a line to the file at `path`. A missing file is created, readable by its owner only.
/// What stands at `path` and is no regular file (a symbolic link that somebody planted, a pipe) is
/// left alone. Blocks for the disk.
void append(const QString &path, const QString &message);

} // namespace VelmoraLog
