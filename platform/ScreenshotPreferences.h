// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

/// A program to run, by its path, and its arguments.
struct SystemCommand {
    QString executable;
    QStringList arguments;

    bool operator==(const SystemCommand &) const = default;
};

/// The system's own screenshot settings, the domain "com.apple.screencapture" with its keys
/// "location" and "show-thumbnail". Read afresh on every call.
///
/// Lives on the main thread. Where the folder is may be read on any thread, by one at a time; that
/// blocks for the file system.
class ScreenshotPreferences : public QObject
{
    Q_OBJECT
public:
    /// The stored "location" as it stands, which may begin with a tilde; absent when none is
    /// stored. Any thread.
    virtual std::optional<QString> location() const = 0;

    /// Where this desktop's own screenshot tool saves when no "location" is stored; absent when
    /// unknown. Once a setting of the tool names no folder of this machine, the one that it named
    /// before. Any thread.
    virtual std::optional<QString> desktopToolFolder() const = 0;

    /// Whether the desktop's own screenshot key goes on saving where it does, whatever is stored
    /// here. Any thread.
    virtual bool keyHasFixedFolder() const { return false; }

    /// From now on changed() tells of changes of the two above; called again after each. A system
    /// that can't tell does nothing. Any thread; blocks for the file system.
    virtual void follow() {}

    /// The stored "show-thumbnail"; absent when none is stored or it is no boolean.
    virtual std::optional<bool> showsThumbnail() const = 0;

    /// Stores what this class can store itself, and returns the commands that must be run, in
    /// order, for the system and the desktop's own tool to follow.
    [[nodiscard]] virtual QList<SystemCommand> storeLocation(const QString &path) = 0;
    [[nodiscard]] virtual QList<SystemCommand> storeShowsThumbnail(bool shows) = 0;

Q_SIGNALS:
    /// The folder may be another one now.
    void changed();
};

std::unique_ptr<ScreenshotPreferences> makeScreenshotPreferences();
