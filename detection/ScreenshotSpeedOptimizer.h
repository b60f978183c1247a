// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"

#include <QString>
#include <QStringList>

/// Turns off the wait that the system puts between taking a screenshot and saving it, and runs the
/// commands that the system's settings need.
namespace ScreenshotSpeedOptimizer
{

/// False too where nothing, or no boolean, is stored. Main thread.
bool isAppleThumbnailDisabled(const ScreenshotPreferences &preferences);

/// Main thread; returns when the system's tools have been told.
void disableAppleThumbnail(ScreenshotPreferences &preferences);

/// Runs a program, by its path, and waits until it ends. Its status and its output are ignored; one
/// that can't be started is logged. Any thread.
void run(const QString &executable, const QStringList &arguments);

} // namespace ScreenshotSpeedOptimizer
