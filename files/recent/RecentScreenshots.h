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

/// What the recent list must know of the screenshot folder. None of it fails.
struct ScreenshotFolderAccess {
    using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

    /// The current screenshot folder. Called on the main thread.
    std::function<QUrl()> folder;
    /// At most so many screenshots of a folder, newest first; nothing when the folder can't be
    /// read, or is none. Called on a background thread, since it may take its time, or never
    /// return.
    std::function<std::optional<QList<QUrl>>(const QUrl &folder, int limit)> newestFiles;
    /// When a file was last modified; a moment before all others where that can't be read. Called
    /// on a background thread.
    std::function<Date(const QUrl &)> modificationDate;
};

/// The latest screenshots, newest first, at most ten, no two equal, kept from one launch to the
/// next. Main thread, which asks no file system for anything: what exists, and since when, is
/// looked up in the background.
class RecentScreenshots : public QObject
{
    Q_OBJECT
public:
    explicit RecentScreenshots(ScreenshotFolderAccess access, QObject *parent = nullptr);
    /// Does not wait for a listing.
    ~RecentScreenshots() override;

    /// Those that lie in the folder; standardised. None while the folder can't be read.
    QList<QUrl> urls() const;

    /// The folder as of the last change or refresh.
    QUrl folder() const;

    /// Whether the folder has been listed, or found unreadable, since it became the folder. Until
    /// then urls() are those that were known to lie in it.
    bool isListed() const { return m_isListed; }

    /// Takes over the stored list, as soon as it has been read. Soon after, those that are gone
    /// have left it.
    void load();

    /// Puts a file at the front, stores the list, and has it refreshed.
    void add(const QUrl &url);

    /// Takes a file out, stores the list, and has it refreshed; a file that is still in the folder
    /// comes back.
    void remove(const QUrl &url);

    /// Has the list made anew, soon, of its own files and the folder's newest, by modification
    /// date. What is gone or lies in another folder leaves it. Of a folder that can't be read
    /// nothing is known: the list, and what is stored of it, stay as they are.
    ///
    /// Requests that come while the folder is listed are served by one more listing; those for
    /// another folder do not wait for it.
    void refresh();

Q_SIGNALS:
    /// The list has been made anew, or could not be: the listing is done.
    void refreshed();

private:
    /// Absent when the folder can't be read.
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
    /// Of any folder; as it is stored.
    QList<QUrl> m_urls;
    QUrl m_folder;
    bool m_isLoaded = true;
    bool m_isListed = false;
    bool m_isReadable = true;
    bool m_isListing = false;
    bool m_isOutdated = false;
    /// Since the listing that is under way has begun.
    QList<QUrl> m_added;
    QSet<QUrl> m_removed;
    /// Tells the listing that is waited for from those that nobody waits for any more.
    int m_listing = 0;
    std::unique_ptr<BackgroundThread> m_background;
    std::unique_ptr<BackgroundThread> m_loader;
};
