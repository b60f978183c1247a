// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

/// A program to run: its path and its arguments.
struct SystemCommand {
    QString executable;
    QStringList arguments;

    bool operator==(const SystemCommand &) const = default;
};

/// The system's own screenshot settings: the domain "com.apple.screencapture" with its keys
/// "location" and "show-thumbnail". Read on each call.
///
/// Lives on the main thread. The folder may be read on any thread, one at a time; that blocks on
/// the file system.
class ScreenshotPreferences : public QObject
{
    Q_OBJECT
public:
    /// The stored "location" as written, possibly with a leading tilde; absent when none is stored.
    /// Any thread.
    virtual std::optional<QString> location() const = 0;

    /// Where this desktop's own screenshot tool saves when no "location" is stored; absent when
    /// unknown. When the tool's setting stops naming a folder of this machine, the last one that it
    /// named. Any thread.
    virtual std::optional<QString> desktopToolFolder() const = 0;

    /// Whether the desktop's own screenshot key keeps saving to the same folder, whatever is stored
    /// here. Any thread.
    virtual bool keyHasFixedFolder() const { return false; }

    /// From now on changed() tells of changes of the two above; called again after each. A system
    /// that can't tell does nothing. Any thread; blocks for the file system.
    virtual void follow() {}

    /// The stored "show-thumbnail"; absent when none is stored or it is not a boolean.
    virtual std::optional<bool> showsThumbnail() const = 0;

    /// Stores what this class can store itself, and returns the commands to run, in order, so that
    /// the system and the desktop's own tool follow.
    [[nodiscard]] virtual QList<SystemCommand> storeLocation(const QString &path) = 0;
    [[nodiscard]] virtual QList<SystemCommand> storeShowsThumbnail(bool shows) = 0;

Q_SIGNALS:
    /// The folder may have changed.
    void changed();
};

std::unique_ptr<ScreenshotPreferences> makeScreenshotPreferences();
