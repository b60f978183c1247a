// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

/// Files are named by standardised absolute file URLs throughout the program. Any thread.
namespace FileUrls
{

/// The URL with "." and "..", doubled and trailing slashes removed from its path; symbolic links
/// are not resolved. Two URLs of one place are equal when both are standardised.
QUrl standardized(const QUrl &url);

/// The standardised URL of a local path.
QUrl fromPath(const QString &path);

/// The folder in which the file stands, standardised.
QUrl parentFolder(const QUrl &url);

/// The file `name` in `folder`, standardised.
QUrl child(const QUrl &folder, const QString &name);

/// The last component of the path; empty for the root folder.
QString lastPathComponent(const QUrl &url);

/// What follows the last dot of the last path component. Empty where there is none, where the dot
/// comes first (".png"), and where what follows holds a space ("v1.2 final"), which is a sentence
/// and no extension.
QString pathExtension(const QString &path);

/// The last path component without its extension and the dot before it.
QString baseName(const QString &path);

/// Whether something stands at the path; a symbolic link to nothing does not count.
bool exists(const QUrl &url);

/// The name with a counter: "base-2.ext", or "base-2" without an extension, beside `wanted`.
QUrl numbered(const QUrl &wanted, int counter);

} // namespace FileUrls
