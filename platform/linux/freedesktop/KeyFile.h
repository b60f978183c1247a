// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The plain "key=value" files, with or without groups, in which KDE and Xfce programs keep their
/// settings. Only regular files of a plausible size are read. Any thread; blocks on the file.
///
/// GLib's GKeyFile reads neither entries before the first group nor KDE's marked keys ("key[$e]").
namespace KeyFile
{

/// The value, unescaped, and with the home folder inserted where the key is marked for that
/// ("key[$e]"). Absent when the file can't be read or has no such key.
/// @param group empty for the keys before the first group
std::optional<QString> value(const QString &file, const QByteArray &group, const QByteArray &key);

/// Replaces the first line that begins with `start` by `line`; without such a line, inserts it
/// before the first group. Everything else in the file stays as it is; a missing file is created.
/// False, with the file unchanged, when that is not possible.
bool replaceLine(const QString &file, const QByteArray &start, const QByteArray &line);

} // namespace KeyFile
