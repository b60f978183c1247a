#pragma once

#include <QByteArray>
#include <QStringBuilder>

#include <optional>
#include <system_error>

/// One trash of the freedesktop kind: a folder with the folders "files" and "info". Paths are in
/// the file system's own bytes. Any thread.
struct TrashFolder {
    QByteArray path;
    /// The top of the file system that the trash is for; empty for the home trash.
    QByteArray top;

    QByteArray filesFolder() const { return path + "/files"; }
    QByteArray infoFolder() const { return path + "/info"; }

    /// Makes what is missing, for the owner only. Folders that are there stay as they are.
    std::error_code prepare() const;

    /// The user's own trash. It may not exist yet.
    static TrashFolder home();

    /// The trash on the file system of `folder` (absolute, without links), ready for use: the
    /// administrator's common ".Trash" if it is safe, else the user's own beside it. Nothing where
    /// the user may have none.
    static std::optional<TrashFolder> onFileSystemOf(const QByteArray &folder);
};

/// Whether a file can be renamed from one folder to the other without being copied. Of a folder
/// that does not exist its nearest ancestor counts. False when either can't be examined.
bool areOnOneFileSystem(const QByteArray &folder, const QByteArray &other);
