// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>

#include <system_error>

/// The info file, "NAME.trashinfo", that a trash keeps for each of its files. Names and paths are
/// in the file system's own bytes. Any thread.
namespace TrashInfo
{

/// The path of the info file of "…/files/NAME": "…/info/NAME.trashinfo". Empty when the file is not
/// in a folder "files".
QByteArray pathFor(const QByteArray &trashedFile);

/// The name for the `attempt`th try (from 1): the file's own, then "base.2.ext", …, shortened
/// before the extension so that the info file's name has at most `maximumLength` bytes and no
/// character is cut.
QByteArray nameInTrash(const QByteArray &name, int attempt, long maximumLength);

/// The info file's content for a file that was at `path`: an absolute path in the home trash, else
/// relative to the top of the file system.
QByteArray content(const QByteArray &path, const QDateTime &deleted);

/// Writes an info file that must not exist yet (`std::errc::file_exists`); leaves none on failure.
std::error_code write(const QByteArray &infoPath, const QByteArray &content);

} // namespace TrashInfo
