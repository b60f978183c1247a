// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"

#include <QList>
#include <QString>

#include <optional>

/// KDE's screenshot tool, whose groups and keys have changed with its versions. Read afresh on
/// every call. Any thread.
namespace SpectacleSettings
{

/// The file that holds them.
QString file();

/// Where it saves; absent when that is no folder of this machine.
std::optional<QString> folder();

/// The commands that make it save there; none where KDE's own tool for that is missing.
QList<SystemCommand> storeFolder(const QString &path);

/// The commands that make it save every screenshot at once; as it comes, it shows one and saves
/// none.
QList<SystemCommand> saveAtOnce();

} // namespace SpectacleSettings
