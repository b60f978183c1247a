// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// A file manager that can show a file selected in its folder.
struct FileManager {
    /// Its own name on the session bus, where it has the interface that all file managers share;
    /// empty when it has no name of its own.
    QString busName;
    /// The program to run to show a file, whose path follows the arguments; empty when its command
    /// line only opens folders.
    QString program;
    QStringList arguments;
};

/// The file manager with this desktop entry ("org.kde.dolphin.desktop"). Absent when it is not a
/// known one. Any thread.
std::optional<FileManager> fileManager(const QString &desktopEntry);

/// The desktop entry of the program that opens folders: the user's choice, else the system's
/// default. Absent when there is none. Any thread; reads some small files.
std::optional<QString> defaultFileManager();
