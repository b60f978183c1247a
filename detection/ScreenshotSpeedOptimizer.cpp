// SPDX-License-Identifier: MIT
#include "detection/ScreenshotSpeedOptimizer.h"

#include "core/VelmoraLog.h"

#include <QProcess>

using namespace Qt::StringLiterals;

namespace ScreenshotSpeedOptimizer
{

bool isAppleThumbnailDisabled(const ScreenshotPreferences &preferences)
{
    return !preferences.showsThumbnail().value_or(true);
}

void disableAppleThumbnail(ScreenshotPreferences &preferences)
{
    VelmoraLog::write(u"disable Apple screenshot thumbnail"_s);
    const QList<SystemCommand> commands = preferences.storeShowsThumbnail(false);
    for (const SystemCommand &command : commands)
        run(command.executable, command.arguments);
}

void run(const QString &executable, const QStringList &arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(executable, arguments);
    if (process.waitForStarted(-1))
        process.waitForFinished(-1);
    else
        VelmoraLog::write(u"command failed "_s + executable + u' ' + arguments.join(u' '));
}

} // namespace ScreenshotSpeedOptimizer
