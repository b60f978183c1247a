// SPDX-License-Identifier: MIT
#include "files/recent/RecentScreenshots.h"

#include "core/VelmoraSettings.h"
#include "core/whenFinished.h"
#include "filesystem/FileUrls.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace
{

constexpr qsizetype maximumEntries = 10;
constexpr int folderFiles = 20;

QStringList pathsOf(const QList<QUrl> &urls)
{
    QStringList paths;
    for (const QUrl &url : urls)
        paths << url.toLocalFile();
    return paths;
}

QList<QUrl> firstOf(const QList<QUrl> &urls)
{
    return urls.first(std::min(urls.size(), maximumEntries));
}

QList<QUrl> existing(const QList<QUrl> &urls)
{
    QList<QUrl> found;
    for (const QUrl &url : urls) {
        if (found.size() < maximumEntries && FileUrls::exists(url))
            found << url;
    }
    return found;
}

/// Checks only files in the folder: others may be on a disk that does not answer.
QList<QUrl> newestIn(const QUrl &folder, const QList<QUrl> &candidates,
                     const std::function<ScreenshotFolderAccess::Date(const QUrl &)> &dateOf)
{
    struct Entry {
        QUrl url;
        ScreenshotFolderAccess::Date modified;
    };
    QList<Entry> entries;
    QSet<QUrl> seen;
    for (const QUrl &url : candidates) {
        if (FileUrls::parentFolder(url) != folder || seen.contains(url) || !FileUrls::exists(url))
            continue;
        seen.insert(url);
        entries.append({url, dateOf(url)});
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry &one, const Entry &other) {
        return one.modified > other.modified;
    });
    QList<QUrl> newest;
    for (const Entry &entry : entries)
        newest << entry.url;
    return firstOf(newest);
}

std::unique_ptr<BackgroundThread> makeThread()
{
    return std::make_unique<BackgroundThread>(0ms);
}

} // namespace

RecentScreenshots::RecentScreenshots(ScreenshotFolderAccess access, QObject *parent)
    : QObject(parent), m_access(std::move(access)), m_background(makeThread())
{
}

RecentScreenshots::~RecentScreenshots() = default;

QList<QUrl> RecentScreenshots::urls() const
{
    if (!m_isReadable)
        return {};
    QList<QUrl> urls = m_urls;
    if (!m_folder.isEmpty())
        urls.removeIf([this](const QUrl &url) { return FileUrls::parentFolder(url) != m_folder; });
    return urls;
}

QUrl RecentScreenshots::folder() const
{
    return m_folder.isEmpty() ? FileUrls::standardized(m_access.folder()) : m_folder;
}

void RecentScreenshots::load()
{
    m_urls.clear();
    const QStringList paths = VelmoraSettings::recentScreenshots();
    m_isLoaded = VelmoraSettings::open().waitUntilRead(0ms);
    if (m_isLoaded) {
        takeStored(paths);
        return;
    }
    m_loader = makeThread();
    const auto stored = m_loader->ask([] {
        VelmoraSettings::open().readAgain();
        return VelmoraSettings::recentScreenshots();
    });
    whenFinished(stored, this, [this](const QStringList &late) {
        m_isLoaded = true;
        const bool hasChanged = !m_urls.isEmpty();
        takeStored(late);
        if (hasChanged)
            save();
    });
}

/// Puts the stored files after those added in the meantime.
void RecentScreenshots::takeStored(const QStringList &paths)
{
    QList<QUrl> urls = m_urls;
    for (const QString &path : paths) {
        const QUrl url = FileUrls::fromPath(path);
        if (path.startsWith(u'/') && !urls.contains(url))
            urls << url;
    }
    m_urls = firstOf(urls);
    if (!m_isListing)
        lookUp([urls] { return existing(urls); }, &RecentScreenshots::takeExisting);
}

void RecentScreenshots::add(const QUrl &url)
{
    const QUrl added = FileUrls::standardized(url);
    m_added.removeAll(added);
    m_added.prepend(added);
    m_removed.remove(added);
    m_urls = withChangesMeanwhile(m_urls);
    save();
    refresh();
}

void RecentScreenshots::remove(const QUrl &url)
{
    m_added.removeAll(url);
    m_removed.insert(url);
    m_urls.removeAll(url);
    save();
    refresh();
}

void RecentScreenshots::refresh()
{
    const QUrl folder = FileUrls::standardized(m_access.folder());
    if (folder != m_folder) {
        m_folder = folder;
        m_isListed = false;
        m_isReadable = true;
        abandonListing();
    }
    m_isOutdated = true;
    if (!m_isListing)
        listFolder();
}

void RecentScreenshots::listFolder()
{
    m_isOutdated = false;
    m_added.clear();
    m_removed.clear();
    const auto list = [known = m_urls, folder = m_folder, newestFiles = m_access.newestFiles,
                       dateOf = m_access.modificationDate]() -> List {
        const List newest = newestFiles(folder, folderFiles);
        return newest ? List(newestIn(folder, known + *newest, dateOf)) : std::nullopt;
    };
    lookUp(list, &RecentScreenshots::takeListed);
}

void RecentScreenshots::lookUp(const Work &work, void (RecentScreenshots::*takeOver)(const List &))
{
    m_isListing = true;
    const auto answer = m_background->ask(work);
    whenFinished(answer, this, [this, takeOver, listing = m_listing](const List &list) {
        if (listing != m_listing)
            return;
        m_isListing = false;
        (this->*takeOver)(list);
        Q_EMIT refreshed();
        if (m_isOutdated && !m_isListing)
            listFolder();
    });
}

/// The listing may be stuck, so its thread is left to it and a new one is made.
void RecentScreenshots::abandonListing()
{
    ++m_listing;
    if (m_isListing)
        m_background = makeThread();
    m_isListing = false;
}

void RecentScreenshots::takeExisting(const List &existing)
{
    m_urls = withChangesMeanwhile(*existing);
}

void RecentScreenshots::takeListed(const List &listed)
{
    m_isListed = true;
    m_isReadable = listed.has_value();
    if (!listed)
        return;
    m_urls = withChangesMeanwhile(*listed);
    save();
}

QList<QUrl> RecentScreenshots::withChangesMeanwhile(const QList<QUrl> &urls) const
{
    QList<QUrl> changed = m_added;
    for (const QUrl &url : urls) {
        if (!m_added.contains(url) && !m_removed.contains(url))
            changed << url;
    }
    return firstOf(changed);
}

/// Does nothing until the stored list has been read.
void RecentScreenshots::save()
{
    if (m_isLoaded)
        VelmoraSettings::setRecentScreenshots(pathsOf(m_urls));
}
