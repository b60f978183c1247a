// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QStringBuilder>

#include <optional>
#include <system_error>

/// A trash as defined by the freedesktop specification: a folder with the subfolders "files" and
/// "info". Paths are in the file system's own bytes. Any thread.
struct TrashFolder {
    QByteArray path;
    /// The top folder of the trash's file system; empty for the home trash.
    QByteArray top;

    QByteArray filesFolder() const { return path + "/files"; }
    QByteArray infoFolder() const { return path + "/info"; }

    /// Creates missing folders, for the owner only. Existing ones stay as they are.
    std::error_code prepare() const;

    /// The user's own trash. It may not exist yet.
    static TrashFolder home();

    /// The trash on the file system of `folder` (absolute, without links), ready for use: the
    /// administrator's common ".Trash" if it is safe, else the user's own beside it. Absent when
    /// the user may not have one.
    static std::optional<TrashFolder> onFileSystemOf(const QByteArray &folder);
};

/// Whether a file can be renamed from one folder to the other without being copied. For a folder
/// that does not exist, its nearest existing ancestor is checked. False when either can't be.
bool areOnOneFileSystem(const QByteArray &folder, const QByteArray &other);
