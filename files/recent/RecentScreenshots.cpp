#include "files/recent/RecentScreenshots.h"

#include "core/VelmoraSettings.h"
#include "core/whenFinished.h"
#include "filesystem/FileUrls.h"

#include <QtConcurrent>

#include <algorithm>

namespace
{

constexpr qsizetype maximumEntries = 10;
constexpr int folderFiles = 20;

QString storeKey()
{
    return QStringLiteral("recentScreenshots");
}

QStringList pathsOf(const QList<QUrl> &urls)
{
    QStringList paths;
    for (const QUrl &url : urls)
        paths << url.toLocalFile();
    return paths;
}

/// A list that is stored already is not written again: each write waits for the disk.
void store(const QStringList &paths)
{
    QSettings settings = VelmoraSettings::open();
    if (settings.value(storeKey()).toStringList() != paths)
        settings.setValue(storeKey(), paths);
}

bool isGone(const QUrl &url)
{
    return !FileUrls::exists(url);
}

} // namespace

RecentScreenshots::RecentScreenshots(ScreenshotFolderAccess access, QObject *parent)
    : QObject(parent), m_access(std::move(access))
{
    m_background.setMaxThreadCount(1);
}

RecentScreenshots::~RecentScreenshots() = default;

void RecentScreenshots::load()
{
    m_urls.clear();
    const QStringList paths = VelmoraSettings::open().value(storeKey()).toStringList();
    for (const QString &path : paths) {
        const QUrl url = FileUrls::fromPath(path);
        if (!isGone(url) && m_urls.size() < maximumEntries)
            m_urls << url;
    }
}

void RecentScreenshots::add(const QUrl &url)
{
    const QUrl added = FileUrls::standardized(url);
    m_urls.removeIf([&added](const QUrl &entry) { return entry == added || isGone(entry); });
    m_urls.prepend(added);
    m_urls = m_urls.first(std::min(m_urls.size(), maximumEntries));
    save();
    refresh();
}

void RecentScreenshots::remove(const QUrl &url)
{
    m_urls.removeAll(url);
    save();
    refresh();
}

void RecentScreenshots::refresh()
{
    m_isOutdated = true;
    if (!m_isListing)
        listFolder();
}

void RecentScreenshots::listFolder()
{
    m_isOutdated = false;
    m_isListing = true;
    const QUrl folder = FileUrls::standardized(m_access.folder());
    const auto listing =
        QtConcurrent::run(&m_background, m_access.newestFiles, folder, folderFiles);
    whenFinished(listing, this, [this, folder](const QList<QUrl> &newestFiles) {
        refill(folder, newestFiles);
        save();
        Q_EMIT refreshed();
        m_isListing = false;
        if (m_isOutdated)
            listFolder();
    });
}

void RecentScreenshots::refill(const QUrl &folder, const QList<QUrl> &newestFiles)
{
    struct Entry {
        QUrl url;
        ScreenshotFolderAccess::Date modified;
    };
    QList<Entry> entries;
    for (const QUrl &candidate : m_urls + newestFiles) {
        const QUrl url = FileUrls::standardized(candidate);
        if (!isGone(url) && FileUrls::parentFolder(url) == folder)
            entries.append({url, m_access.modificationDate(url)});
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry &one, const Entry &other) {
        return one.modified > other.modified;
    });
    m_urls.clear();
    for (const Entry &entry : entries) {
        if (m_urls.size() < maximumEntries && !m_urls.contains(entry.url))
            m_urls << entry.url;
    }
}

void RecentScreenshots::save()
{
    m_background.start([paths = pathsOf(m_urls)] { store(paths); });
}
