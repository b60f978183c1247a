#pragma once

#include "platform/ScreenshotPreferences.h"

#include <QList>
#include <QString>

#include <optional>

/// The settings of GNOME's kin, through their own command. Main thread.
namespace GSettings
{

/// A setting that is a string; absent where the command, the schema or the key is missing, or
/// where the command does not answer within a second.
std::optional<QString> string(const QString &schema, const QString &key);

/// The commands that store it; none where the command is missing.
QList<SystemCommand> storeString(const QString &schema, const QString &key, const QString &value);

} // namespace GSettings
