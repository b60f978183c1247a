#pragma once

#include <QStringList>
#include <QUrl>

#include <optional>

struct FileManagerCommand {
    QString program;
    QStringList arguments;
};

/// How the file manager with this desktop entry ("org.kde.dolphin.desktop") is started so that it
/// shows a file selected. Nothing for a file manager that can't, or that is not known. Any thread.
std::optional<FileManagerCommand> fileManagerCommand(const QString &desktopEntry, const QUrl &file);
