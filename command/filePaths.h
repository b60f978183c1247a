// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// Paths as the system stores them: bytes, not necessarily valid in any encoding.
namespace FilePaths
{

/// The folder, with a trailing slash; empty for a bare name.
QByteArray folderOf(const QByteArray &path);

/// The part after the last slash.
QByteArray nameOf(const QByteArray &path);

/// The name as text, for display only. Bytes that are not UTF-8 become replacement characters.
QString nameText(const QByteArray &path);

/// The absolute path of the same file. Links are not resolved.
QByteArray absolute(const QByteArray &path);

/// Whether something exists there, even a dangling link.
bool isTaken(const QByteArray &path);

/// The path with a counter before its extension, "base-2.ext"; unchanged for counter 1. All
/// other bytes are kept, even if they are not valid text.
QByteArray numbered(const QByteArray &path, int counter);

/// The path without its counter, if it has one.
QByteArray withoutNumber(const QByteArray &path);

/// For display: control characters and backslashes become "\n", "\t", "\\" or "\ooo". All else is
/// unchanged.
QByteArray escaped(const QByteArray &path);

} // namespace FilePaths
