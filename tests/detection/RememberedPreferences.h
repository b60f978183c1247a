// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"

/// Preferences in memory, with the commands to return.
class RememberedPreferences : public ScreenshotPreferences
{
public:
    std::optional<QString> location() const override { return storedLocation; }
    std::optional<QString> desktopToolFolder() const override { return toolFolder; }
    std::optional<bool> showsThumbnail() const override { return storedThumbnail; }

    QList<SystemCommand> storeLocation(const QString &path) override
    {
        storedLocation = path;
        return commands;
    }
    QList<SystemCommand> storeShowsThumbnail(bool shows) override
    {
        storedThumbnail = shows;
        return commands;
    }

    std::optional<QString> storedLocation;
    std::optional<QString> toolFolder;
    std::optional<bool> storedThumbnail;
    QList<SystemCommand> commands;
};
