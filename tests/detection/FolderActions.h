// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileTime.h"

#include <QString>

#include <chrono>

/// What other programs do in a screenshot folder. False if the system refuses.
namespace FolderActions
{

bool write(const QString &path, const QByteArray &content = "picture");

/// For names that are not UTF-8.
bool writeRaw(const QByteArray &path);

/// Sets the date of the entry itself, even if it is a link.
bool setDate(const QString &path, FileTime date);

/// Moves in a complete file with that date, in one step.
bool moveIn(const QString &path, FileTime date);

bool rename(const QString &path, const QString &newPath);
bool link(const QString &path, const QString &newPath);
bool symlink(const QString &target, const QString &path);

} // namespace FolderActions
