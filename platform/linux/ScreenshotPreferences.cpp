// SPDX-License-Identifier: MIT
#include "platform/ScreenshotPreferences.h"

#include "core/SettingsStore.h"
#include "platform/linux/folder-events/ClockWatch.h"
#include "platform/linux/folder-events/PathWatch.h"
#include "platform/linux/freedesktop/UserDirectories.h"
#include "platform/linux/screenshot-tools/FollowedSetting.h"
#include "platform/linux/screenshot-tools/ScreenshotTools.h"

#include <QDir>
#include <QFileInfo>
#include <QMutex>

#include <ctime>

using namespace Qt::StringLiterals;

namespace
{

QString locationKey()
{
    return u"location"_s;
}

QString showsThumbnailKey()
{
    return u"show-thumbnail"_s;
}

std::span<const ScreenshotTool> runningTools()
{
    return ScreenshotTools::toolsOf(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}

/// The folder, if a screenshot tool can save in it. It need not exist yet.
std::optional<QString> usable(const std::optional<QString> &folder)
{
    if (!folder || folder->isEmpty())
        return std::nullopt;
    const QString path = QDir::cleanPath(*folder);
    const QFileInfo info(path);
    if (info.exists() && !info.isDir())
        return std::nullopt;
    // A tool that saves directly into the home folder, among everything else there, is not
    // followed.
    const QString home = QDir::cleanPath(QDir::homePath());
    return path == home || info == QFileInfo(home) ? std::nullopt : std::optional(path);
}

/// In this place's time.
std::time_t nextMidnight()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts = {};
    ::tzset();
    ::localtime_r(&now, &parts);
    parts.tm_mday += 1;
    parts.tm_hour = parts.tm_min = parts.tm_sec = 0;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
}

class LinuxScreenshotPreferences : public ScreenshotPreferences
{
public:
    LinuxScreenshotPreferences()
    {
        connect(&m_files, &PathWatch::changed, this, &ScreenshotPreferences::changed);
        connect(&m_clock, &ClockWatch::timeReached, this, &ScreenshotPreferences::changed);
        connect(&m_clock, &ClockWatch::clockSet, this, &ScreenshotPreferences::changed);
    }

    std::optional<QString> location() const override
    {
        m_domain.readAgain();
        const QVariant stored = m_domain.value(locationKey());
        return stored.typeId() == QMetaType::QString ? std::optional(stored.toString())
                                                     : std::nullopt;
    }

    std::optional<QString> desktopToolFolder() const override
    {
        const QMutexLocker locker(&m_toolLock);
        const std::span<const ScreenshotTool> tools = runningTools();
        for (const ScreenshotTool &tool : tools) {
            if (const auto folder = usable(tool.folder(valueOf(tool.setting))))
                return m_toolFolder = folder;
        }
        for (auto tool = tools.begin(); tool != tools.end() && !m_toolFolder; ++tool)
            m_toolFolder = usable(tool->usualFolder());
        return m_toolFolder;
    }

    bool keyHasFixedFolder() const override
    {
        return runningTools().front().key == ScreenshotTool::Key::SavesInFixedFolder;
    }

    void follow() override
    {
        QStringList files = {m_domain.fileName(), UserDirectories::file()};
        for (const ScreenshotTool &tool : runningTools())
            files.append(tool.file());
        for (const QString &file : files) {
            if (!file.isEmpty())
                m_files.watch(QFile::encodeName(file), PathWatch::End::File);
        }
    }

    std::optional<bool> showsThumbnail() const override
    {
        const QString stored = m_domain.value(showsThumbnailKey()).toString();
        if (stored == u"true"_s)
            return true;
        return stored == u"false"_s ? std::optional(false) : std::nullopt;
    }

    QList<SystemCommand> storeLocation(const QString &path) override
    {
        m_domain.setValue(locationKey(), path);
        const QMutexLocker locker(&m_toolLock);
        QList<SystemCommand> commands;
        for (const ScreenshotTool &tool : runningTools()) {
            if (!tool.setting.schema || valueOf(tool.setting))
                commands += tool.storeFolder(path);
        }
        return commands;
    }

    QList<SystemCommand> storeShowsThumbnail(bool shows) override
    {
        m_domain.setValue(showsThumbnailKey(), shows);
        QList<SystemCommand> commands;
        for (const ScreenshotTool &tool : runningTools()) {
            if (!shows)
                commands += tool.saveAtOnce();
        }
        return commands;
    }

private:
    std::optional<QString> valueOf(const FollowedSetting::Name &name) const
    {
        if (!name.schema)
            return std::nullopt;
        if (!m_setting)
            m_setting = std::make_unique<FollowedSetting>(name, m_reportChange);
        return m_setting->value();
    }

    mutable QMutex m_toolLock;
    /// The last folder that the tool's settings named.
    mutable std::optional<QString> m_toolFolder;
    /// A file beside the program's own preferences.
    SettingsStore m_domain{u"com.apple.screencapture"_s};
    PathWatch m_files;
    /// The name of a tool's folder may hold the date.
    ClockWatch m_clock{nextMidnight};
    const std::function<void()> m_reportChange = [this] {
        QMetaObject::invokeMethod(this, &ScreenshotPreferences::changed, Qt::QueuedConnection);
    };
    /// Made on first use; last, because it reports changes until it is destroyed.
    mutable std::unique_ptr<FollowedSetting> m_setting;
};

} // namespace

std::unique_ptr<ScreenshotPreferences> makeScreenshotPreferences()
{
    return std::make_unique<LinuxScreenshotPreferences>();
}
