// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"

#include <QString>
#include <QStringList>

/// Turns off the system's delay between taking a screenshot and saving it, and runs the commands
/// that the system's settings need.
namespace ScreenshotSpeedOptimizer
{

/// Also false if no value, or a value that is not a boolean, is stored. Main thread.
bool isAppleThumbnailDisabled(const ScreenshotPreferences &preferences);

/// Returns once the system's tools have been notified. Main thread.
void disableAppleThumbnail(ScreenshotPreferences &preferences);

/// Runs the program at this path and waits until it ends. Its exit status and output are ignored. A
/// program that cannot be started is logged. Any thread.
void run(const QString &executable, const QStringList &arguments);

} // namespace ScreenshotSpeedOptimizer
