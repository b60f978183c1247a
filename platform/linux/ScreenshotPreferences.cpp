#include "platform/ScreenshotPreferences.h"

#include "platform/linux/folder-events/PathWatch.h"
#include "platform/linux/freedesktop/UserDirectories.h"
#include "platform/linux/screenshot-tools/FollowedSetting.h"
#include "platform/linux/screenshot-tools/ScreenshotTools.h"

#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QSettings>
#include <QTemporaryFile>

#include <cstdio>

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

/// The folder, if a screenshot tool can save in it. A missing one may come.
std::optional<QString> usable(const std::optional<QString> &folder)
{
    if (!folder || folder->isEmpty())
        return std::nullopt;
    const QString path = QDir::cleanPath(*folder);
    const QFileInfo info(path);
    if (info.exists() && !info.isDir())
        return std::nullopt;
    // Whoever saves between all that stands in the home folder is not followed there.
    const QString home = QDir::cleanPath(QDir::homePath());
    return path == home || info == QFileInfo(home) ? std::nullopt : std::optional(path);
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

    /// To write into its own file it would wait for a lock there, half a minute for that of a
    /// writer that was killed. So another one is written, which takes the place of the old one.
    void store(const QString &key, const QVariant &value) const
    {
        const QFileInfo place(fileName());
        const QString path = place.exists() ? place.canonicalFilePath() : fileName();
        QTemporaryFile draft(path + QStringLiteral(".XXXXXX"));
        if (!QDir().mkpath(place.path()) || !draft.open())
            return;
        QSettings written(draft.fileName(), QSettings::NativeFormat);
        for (const QString &other : allKeys())
            written.setValue(other, this->value(other));
        written.setValue(key, value);
        written.sync();
        if (written.status() == QSettings::NoError &&
            ::rename(QFile::encodeName(draft.fileName()).constData(),
                     QFile::encodeName(path).constData()) == 0)
            draft.setAutoRemove(false);
    }
};

class LinuxScreenshotPreferences : public ScreenshotPreferences
{
public:
    LinuxScreenshotPreferences()
    {
        connect(&m_files, &PathWatch::changed, this, &ScreenshotPreferences::changed);
    }

    std::optional<QString> location() const override
    {
        const QVariant stored = DomainFile().value(locationKey());
        return stored.typeId() == QMetaType::QString ? std::optional(stored.toString())
                                                     : std::nullopt;
    }

    std::optional<QString> desktopToolFolder() const override
    {
        const QMutexLocker locker(&m_toolLock);
        const ScreenshotTool &tool = runningTool();
        const std::optional<QString> folder = usable(tool.folder(valueOf(tool.setting)));
        if (folder || !m_toolFolder)
            m_toolFolder = folder ? folder : usable(tool.usualFolder());
        return m_toolFolder;
    }

    void follow() override
    {
        for (const QString &file :
             {DomainFile().fileName(), UserDirectories::file(), runningTool().file()}) {
            if (!file.isEmpty())
                m_files.watch(QFile::encodeName(file), PathWatch::End::File);
        }
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
        DomainFile().store(locationKey(), path);
        return runningTool().storeFolder(path);
    }

    QList<SystemCommand> storeShowsThumbnail(bool shows) override
    {
        DomainFile().store(showsThumbnailKey(), shows);
        return shows ? QList<SystemCommand>() : runningTool().saveAtOnce();
    }

private:
    std::optional<QString> valueOf(const FollowedSetting::Name &name) const
    {
        if (!name.schema)
            return std::nullopt;
        if (!m_setting)
            m_setting = std::make_unique<FollowedSetting>(name, m_tellChange);
        return m_setting->value();
    }

    mutable QMutex m_toolLock;
    /// The last one that the tool's settings named.
    mutable std::optional<QString> m_toolFolder;
    PathWatch m_files;
    const std::function<void()> m_tellChange = [this] {
        QMetaObject::invokeMethod(this, &ScreenshotPreferences::changed, Qt::QueuedConnection);
    };
    /// Made by the first who asks; last, since it tells of changes until its end.
    mutable std::unique_ptr<FollowedSetting> m_setting;
};

} // namespace

std::unique_ptr<ScreenshotPreferences> makeScreenshotPreferences()
{
    return std::make_unique<LinuxScreenshotPreferences>();
}
