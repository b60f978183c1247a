// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// A file manager that can be asked to show a file selected in its folder.
struct FileManager {
    /// Where it answers on the session bus, under the interface that all of them share; empty when
    /// it has no name of its own there.
    QString busName;
    /// What is run to show a file, whose path goes behind the arguments; empty when its command
    /// line opens folders only.
    QString program;
    QStringList arguments;
};

/// The file manager with this desktop entry ("org.kde.dolphin.desktop"). Absent for one that is not
/// known. Any thread.
std::optional<FileManager> fileManager(const QString &desktopEntry);

/// The desktop entry of the program that opens folders for the user: the one that they have chosen,
/// else the one that the system has. Absent when there is none. Any thread; reads some small files.
std::optional<QString> defaultFileManager();
