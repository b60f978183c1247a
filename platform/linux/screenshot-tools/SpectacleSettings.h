// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"

#include <QList>
#include <QString>

#include <optional>

/// KDE's screenshot tool, whose groups and keys differ between versions. Read on each call. Any
/// thread.
namespace SpectacleSettings
{

/// The file with its settings.
QString file();

/// Where it saves; absent when that is not a folder of this machine.
std::optional<QString> folder();

/// The commands that make it save there; none when KDE's own tool for that is missing.
QList<SystemCommand> storeFolder(const QString &path);

/// The commands that make it save every screenshot at once; by default it shows the screenshot and
/// saves nothing.
QList<SystemCommand> saveAtOnce();

} // namespace SpectacleSettings
