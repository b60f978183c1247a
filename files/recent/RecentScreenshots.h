// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// What the recent list needs to know of the screenshot folder. These functions do not fail.
struct ScreenshotFolderAccess {
    using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

    /// The current screenshot folder. Called on the main thread.
    std::function<QUrl()> folder;
    /// At most `limit` screenshots of a folder, newest first; nothing if the folder does not exist
    /// or cannot be read. Called on a background thread, because it may take long or never return.
    std::function<std::optional<QList<QUrl>>(const QUrl &folder, int limit)> newestFiles;
    /// When a file was last modified; earlier than any real date if that cannot be read. Called on
    /// a background thread.
    std::function<Date(const QUrl &)> modificationDate;
};

/// The latest screenshots, newest first, at most ten, without duplicates, kept across launches.
/// Main thread, which never accesses the file system: which files exist, and their dates, are
/// looked up in the background.
class RecentScreenshots : public QObject
{
    Q_OBJECT
public:
    explicit RecentScreenshots(ScreenshotFolderAccess access, QObject *parent = nullptr);
    /// Does not wait for a listing.
    ~RecentScreenshots() override;

    /// The screenshots in the folder, standardised. Empty while the folder cannot be read.
    QList<QUrl> urls() const;

    /// The folder at the last change or refresh.
    QUrl folder() const;

    /// Whether the current folder has been listed or found unreadable. Until then, urls() are the
    /// files already known to be in it.
    bool isListed() const { return m_isListed; }

    /// Takes over the stored list as soon as it has been read. Soon after, files that no longer
    /// exist are removed.
    void load();

    /// Adds a file at the front, stores the list and refreshes it.
    void add(const QUrl &url);

    /// Removes a file, stores the list and refreshes it. A file that is still in the folder comes
    /// back.
    void remove(const QUrl &url);

    /// Soon rebuilds the list from its own files and the newest in the folder, sorted by
    /// modification date. Files that are gone or in another folder are dropped. If the folder
    /// cannot be read, nothing is known about it, so the list and the stored copy stay as they are.
    ///
    /// Requests during a listing share one more listing. A request for another folder does not wait
    /// for the running one.
    void refresh();

Q_SIGNALS:
    /// A listing is done, whether or not the list could be rebuilt.
    void refreshed();

private:
    /// Nothing if the folder cannot be read.
    using List = std::optional<QList<QUrl>>;
    using Work = std::function<List()>;

    void listFolder();
    void lookUp(const Work &work, void (RecentScreenshots::*takeOver)(const List &));
    void abandonListing();
    void takeStored(const QStringList &paths);
    void takeExisting(const List &existing);
    void takeListed(const List &listed);
    QList<QUrl> withChangesMeanwhile(const QList<QUrl> &urls) const;
    void save();

    ScreenshotFolderAccess m_access;
    /// Files in any folder, as stored.
    QList<QUrl> m_urls;
    QUrl m_folder;
    bool m_isLoaded = true;
    bool m_isListed = false;
    bool m_isReadable = true;
    bool m_isListing = false;
    bool m_isOutdated = false;
    /// Changes since the current listing began.
    QList<QUrl> m_added;
    QSet<QUrl> m_removed;
    /// Distinguishes the listing that is waited for from abandoned ones.
    int m_listing = 0;
    std::unique_ptr<BackgroundThread> m_background;
    std::unique_ptr<BackgroundThread> m_loader;
};
