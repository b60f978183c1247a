// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>

#include <system_error>

/// The note that a trash keeps of each file in it, as "NAME.trashinfo". Names and paths are in the
/// file system's own bytes. Any thread.
namespace TrashInfo
{

/// The path of the note of "…/files/NAME": "…/info/NAME.trashinfo". Empty when the file is not in a
/// folder "files".
QByteArray pathFor(const QByteArray &trashedFile);

/// The name for the `attempt`th try (from 1): the file's own, then "base.2.ext", …, shortened
/// before the extension so that its note's name has at most `maximumLength` bytes and no character
/// is cut.
QByteArray nameInTrash(const QByteArray &name, int attempt, long maximumLength);

/// A note on the file that stood at `path`: absolute in the home trash, else from the top of the
/// file system.
QByteArray content(const QByteArray &path, const QDateTime &deleted);

/// Writes a note that must not exist yet (`std::errc::file_exists`); a failure leaves none behind.
std::error_code write(const QByteArray &infoPath, const QByteArray &content);

} // namespace TrashInfo
