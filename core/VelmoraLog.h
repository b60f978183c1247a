// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

/// The program's only diagnostic output: one timestamped line per event, in UTF-8, appended to a
/// plain text file. Nothing is escaped, rotated or truncated.
///
/// Failures are ignored: the line is lost, nothing else happens. Any thread.
namespace VelmoraLog
{

/// Appends a line with the time of the call to "/tmp/Velmora.log". Never waits for the disk: the
/// log's own thread opens the file, appends and closes it for each line, at once and in the order
/// of the calls. Lines are lost only if the process is killed at that moment or the disk does not
/// answer.
void write(const QString &message);

/// Whether all lines are written before the time is up.
bool waitUntilWritten(std::chrono::milliseconds longestWait);

/// Appends a line to the file at `path`. A missing file is created, readable only by its owner.
/// Anything but a regular file (a planted symbolic link, a pipe) is left alone. Blocks for the
/// disk.
void append(const QString &path, const QString &message);

} // namespace VelmoraLog
