// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

/// The whole program names files by standardised absolute file URLs. Any thread.
namespace FileUrls
{

/// The URL without ".", "..", doubled or trailing slashes in its path; symbolic links are not
/// resolved. Two standardised URLs of one place are equal.
QUrl standardized(const QUrl &url);

/// The standardised URL of a local path.
QUrl fromPath(const QString &path);

/// The folder that contains the file, standardised.
QUrl parentFolder(const QUrl &url);

/// The file `name` in `folder`, standardised.
QUrl child(const QUrl &folder, const QString &name);

/// The last component of the path; empty for the root folder.
QString lastPathComponent(const QUrl &url);

/// What follows the last dot of the last path component. Empty without a dot, when the dot comes
/// first (".png"), and when what follows contains a space ("v1.2 final"): that is a sentence, not
/// an extension.
QString pathExtension(const QString &path);

/// The last path component without its extension and the dot before it.
QString baseName(const QString &path);

/// Whether there is something at the path; a symbolic link to nothing does not count.
bool exists(const QUrl &url);

/// `wanted` with a counter in its name: "base-2.ext", or "base-2" without an extension.
QUrl numbered(const QUrl &wanted, int counter);

} // namespace FileUrls
