#pragma once

#include "detection/FileTime.h"

#include <QString>

#include <chrono>

/// What other programs do in a screenshot folder. Each fails the test where it stands by returning
/// false.
namespace FolderActions
{

bool write(const QString &path, const QByteArray &content = "picture");

/// Sets the date of the entry itself, also of a link.
bool setDate(const QString &path, FileTime date);

/// A file of that date, moved in at once as a whole.
bool moveIn(const QString &path, FileTime date);

bool link(const QString &path, const QString &newPath);
bool symlink(const QString &target, const QString &path);

} // namespace FolderActions
