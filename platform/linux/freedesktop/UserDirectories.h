// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// The user's own folders, as `user-dirs.dirs` in the configuration folder names them. Read afresh
/// on every call. Any thread.
namespace UserDirectories
{

/// The file that names them.
QString file();

/// The folder of that name ("PICTURES", "SCREENSHOTS"); absent when the file names none. One that
/// is switched off is the home folder.
std::optional<QString> folder(const QString &name);

/// The path of a folder that a setting names by a URL, or by its path. Absent for a folder of
/// another machine and for a path that is not absolute.
std::optional<QString> ofThisMachine(const QString &setting);

/// Makes `path` the folder of that name. A path that the file can't hold changes nothing.
void store(const QString &name, const QString &path);

} // namespace UserDirectories
