// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// The user's own folders, as listed in `user-dirs.dirs` in the configuration folder. Read on each
/// call. Any thread.
namespace UserDirectories
{

/// The file that lists them.
QString file();

/// The folder with that name ("PICTURES", "SCREENSHOTS"); absent when the file does not list it.
/// One that is switched off is the home folder.
std::optional<QString> folder(const QString &name);

/// The path of a folder that a setting gives as a URL or as a path. Absent for a folder on another
/// machine and for a relative path.
std::optional<QString> ofThisMachine(const QString &setting);

/// Makes `path` the folder with that name. A path that the file can't hold changes nothing.
void store(const QString &name, const QString &path);

} // namespace UserDirectories
