#pragma once

#include <QString>

/// The program's only diagnostic output: one timestamped line an event, in UTF-8, appended to a
/// plain text file. Nothing is escaped, rotated or truncated.
///
/// Every failure is swallowed: the line is lost and nothing else. Any thread; lines of two threads
/// come in no promised order.
namespace VelmoraLog
{

/// Appends a line to "/tmp/Velmora.log".
void write(const QString &message);

/// Appends a line to the file at `path`. A missing file is created, readable by its owner only.
/// What stands at `path` and is no regular file (a symbolic link that somebody planted, a pipe) is
/// left alone.
void append(const QString &path, const QString &message);

} // namespace VelmoraLog
