// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntries.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cstdlib>
#include <sys/stat.h>
#include <time.h>

using namespace Qt::StringLiterals;

namespace
{

/// Folders below "applications" nest one deep; the limit stops a link that leads back up.
constexpr int deepestFolder = 4;

/// File times advance in steps of some milliseconds: a folder that has changed this shortly before
/// it was read may change again without a new time.
constexpr qint64 timeStepNanoseconds = 50'000'000;

constexpr qint64 absent = -1;
constexpr qint64 uncertain = -2;

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

qint64 now()
{
    timespec time = {};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return nanoseconds(time);
}

qint64 folderTime(const QString &folder)
{
    struct stat status = {};
    const QByteArray path = QFile::encodeName(folder);
    return ::stat(path.constData(), &status) == 0 ? nanoseconds(status.st_mtim) : absent;
}

} // namespace

QStringList DesktopEntries::standardFolders()
{
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

DesktopEntries DesktopEntries::read(const QStringList &folders)
{
    DesktopEntries entries;
    entries.m_readAt = now();
    for (const QString &folder : folders)
        entries.readFolder(folder, QString(), 0);
    // Entries that the user has deleted were needed only to hide others.
    erase_if(entries.m_paths, [](const auto &item) { return item.value().isEmpty(); });
    return entries;
}

void DesktopEntries::readFolder(const QString &folder, const QString &idPrefix, int depth)
{
    if (m_folderTimes.contains(folder))
        return;
    const qint64 time = folderTime(folder);
    const bool justChanged = std::abs(time - m_readAt) < timeStepNanoseconds;
    m_folderTimes[folder] = justChanged ? uncertain : time;
    if (time == absent)
        return;
    const QString suffix = u".desktop"_s;
    const QDir::Filters filters = QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Readable;
    for (const QFileInfo &info : QDir(folder).entryInfoList(filters, QDir::Name)) {
        const QString name = info.fileName();
        if (name.endsWith(suffix) && info.isFile())
            readEntry(info.filePath(), idPrefix + name.chopped(suffix.size()));
        else if (info.isDir() && depth < deepestFolder)
            readFolder(info.filePath(), idPrefix + name + u'-', depth + 1);
    }
}

void DesktopEntries::readEntry(const QString &path, const QString &id)
{
    if (m_paths.contains(id))
        return;
    const std::optional<DesktopEntry> entry = DesktopEntry::read(path);
    if (!entry || !entry->isApplication()) {
        m_paths.insert(id, QString());
        return;
    }
    m_paths.insert(id, path);
    m_shown.insert(id, !entry->boolean("NoDisplay").value_or(false));
    const QString name = id.toLower();
    m_idsByName[name].append(id);
    if (const QString lastPart = name.section(u'.', -1); lastPart != name)
        m_idsByName[lastPart].append(id);
    const QString windowClass = entry->string("StartupWMClass");
    if (windowClass.isEmpty())
        return;
    const auto claimed = m_claimants.constFind(windowClass);
    if (claimed == m_claimants.cend() || isBetterClaimant(id, *claimed, windowClass))
        m_claimants.insert(windowClass, id);
}

bool DesktopEntries::isBetterClaimant(const QString &id, const QString &than,
                                      const QString &windowClass) const
{
    if (m_shown.value(id) != m_shown.value(than))
        return m_shown.value(id);
    return id == windowClass && than != windowClass;
}

bool DesktopEntries::isOutdated() const
{
    for (auto folder = m_folderTimes.cbegin(); folder != m_folderTimes.cend(); ++folder) {
        if (folderTime(folder.key()) != folder.value())
            return true;
    }
    return false;
}

std::optional<QString> DesktopEntries::claimant(const QString &windowClass) const
{
    const auto found = m_claimants.constFind(windowClass);
    return found == m_claimants.cend() ? std::nullopt : std::optional(*found);
}

std::optional<QString> DesktopEntries::resembling(const QString &name) const
{
    const QStringList ids = m_idsByName.value(name.toLower());
    return ids.size() == 1 ? std::optional(ids.first()) : std::nullopt;
}

std::optional<DesktopEntry> DesktopEntries::entry(const QString &id) const
{
    const QString path = m_paths.value(id);
    return path.isEmpty() ? std::nullopt : DesktopEntry::read(path);
}
