// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"
#include "platform/linux/screenshot-tools/FollowedSetting.h"

#include <QList>
#include <QString>

/// Writes the settings of GNOME and its relatives through their own command. Any thread.
namespace GSettings
{

/// The commands that store a string; none when their command is not installed.
QList<SystemCommand> storeString(const FollowedSetting::Name &name, const QString &value);

} // namespace GSettings
