#include "platform/ScreenshotPreferences.h"

#include "platform/linux/screenshot-tools/ScreenshotTools.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace
{

QString locationKey()
{
    return QStringLiteral("location");
}

QString showsThumbnailKey()
{
    return QStringLiteral("show-thumbnail");
}

const ScreenshotTool &runningTool()
{
    return ScreenshotTools::toolOf(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}

bool isHome(const QString &path)
{
    const QString home = QDir::cleanPath(QDir::homePath());
    return path == home || QFileInfo(path) == QFileInfo(home);
}

/// The domain is a file beside the program's own preferences.
class DomainFile : public QSettings
{
public:
    DomainFile()
        : QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("velmora"),
                    QStringLiteral("com.apple.screencapture"))
    {
        setFallbacksEnabled(false);
    }
};

class LinuxScreenshotPreferences : public ScreenshotPreferences
{
public:
    std::optional<QString> location() const override
    {
        const QVariant stored = DomainFile().value(locationKey());
        return stored.typeId() == QMetaType::QString ? std::optional(stored.toString())
                                                     : std::nullopt;
    }

    std::optional<QString> desktopToolFolder() const override
    {
        const std::optional<QString> folder = runningTool().folder();
        if (!folder || folder->isEmpty())
            return std::nullopt;
        // Whoever saves between all that stands in the home folder is not followed there.
        const QString path = QDir::cleanPath(*folder);
        return isHome(path) ? std::nullopt : std::optional(path);
    }

    std::optional<bool> showsThumbnail() const override
    {
        const QString stored = DomainFile().value(showsThumbnailKey()).toString();
        if (stored == QStringLiteral("true"))
            return true;
        return stored == QStringLiteral("false") ? std::optional(false) : std::nullopt;
    }

    QList<SystemCommand> storeLocation(const QString &path) override
    {
        DomainFile().setValue(locationKey(), path);
        return runningTool().storeFolder(path);
    }

    QList<SystemCommand> storeShowsThumbnail(bool shows) override
    {
        DomainFile().setValue(showsThumbnailKey(), shows);
        return shows ? QList<SystemCommand>() : runningTool().saveAtOnce();
    }
};

} // namespace

std::unique_ptr<ScreenshotPreferences> makeScreenshotPreferences()
{
    return std::make_unique<LinuxScreenshotPreferences>();
}
