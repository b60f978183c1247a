#pragma once

#include <QByteArray>
#include <QDateTime>

#include <system_error>

/// What a trash notes of each file in it, in a file "NAME.trashinfo". Names and paths are in the
/// file system's own bytes. Any thread.
namespace TrashInfo
{

/// Where the note of "…/files/NAME" stands: "…/info/NAME.trashinfo". Empty when the file lies in no
/// folder "files".
QByteArray pathFor(const QByteArray &trashedFile);

/// The name under which the file is tried for the `attempt`th time (from 1): its own, then
/// "base.2.ext", …, shortened before the extension so that its note's name has at most
/// `maximumLength` bytes and no character is cut.
QByteArray nameInTrash(const QByteArray &name, int attempt, long maximumLength);

/// A note on the file that stood at `path`: absolute in the home trash, else from the top of the
/// file system.
QByteArray content(const QByteArray &path, const QDateTime &deleted);

/// Writes a note that must not exist yet (`std::errc::file_exists`); a failure leaves none behind.
std::error_code write(const QByteArray &infoPath, const QByteArray &content);

} // namespace TrashInfo
