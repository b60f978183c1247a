// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// Paths as the system has them: bytes, which need not be valid in any encoding.
namespace FilePaths
{

/// The folder, with its slash; empty for a bare name.
QByteArray folderOf(const QByteArray &path);

/// What follows the last slash.
QByteArray nameOf(const QByteArray &path);

/// The name as text, for looking at. Bytes that are no UTF-8 become replacement characters.
QString nameText(const QByteArray &path);

/// The same file whatever the current folder is; links are not resolved.
QByteArray absolute(const QByteArray &path);

/// Whether something stands there, be it a link to nothing.
bool isTaken(const QByteArray &path);

/// The path with a counter before its extension, "base-2.ext"; 1 is the path itself. All other
/// bytes stay, whatever they are.
QByteArray numbered(const QByteArray &path, int counter);

/// The path without its counter, if it has one.
QByteArray withoutNumber(const QByteArray &path);

/// For people: control characters and backslashes as "\n", "\t", "\\" or "\ooo". Nothing else is
/// changed.
QByteArray escaped(const QByteArray &path);

} // namespace FilePaths
