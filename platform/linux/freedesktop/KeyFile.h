// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The plain "key=value" files, in groups or without, in which KDE and Xfce programs keep their
/// settings. What is no regular file, or larger than such files are, is not read. Any thread;
/// blocks for the file.
namespace KeyFile
{

/// The value with its escapes undone, and with the home folder put in where the key is marked as
/// one that holds it ("key[$e]"). Absent when the file can't be read or has no such key.
/// @param group empty for what stands before the first group
std::optional<QString> value(const QString &file, const QByteArray &group, const QByteArray &key);

/// Puts `line` in the place of the first line that begins with `start`, or before the first group
/// where there is none. Everything else in the file stays as it is; a missing file is made. False,
/// with the file as it was, where that is not possible.
bool replaceLine(const QString &file, const QByteArray &start, const QByteArray &line);

} // namespace KeyFile
