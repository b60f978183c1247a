#pragma once

#include <QList>
#include <QObject>
#include <QThreadPool>
#include <QUrl>

#include <chrono>
#include <functional>

/// What the recent list must know of the screenshot folder. None of it fails.
struct ScreenshotFolderAccess {
    using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

    /// The current screenshot folder. Called on the main thread.
    std::function<QUrl()> folder;
    /// At most so many screenshots of a folder, newest first. Called on a background thread, since
    /// a large folder takes its time.
    std::function<QList<QUrl>(const QUrl &folder, int limit)> newestFiles;
    /// When a file was last modified; a moment before all others where that can't be read. Called
    /// on the main thread.
    std::function<Date(const QUrl &)> modificationDate;
};

/// The latest screenshots, newest first, at most ten, no two equal, kept from one launch to the
/// next. Each change goes to the disk at once, in the background; the stored list is always a whole
/// one. Main thread.
class RecentScreenshots : public QObject
{
    Q_OBJECT
public:
    explicit RecentScreenshots(ScreenshotFolderAccess access, QObject *parent = nullptr);
    /// Waits until the list is stored.
    ~RecentScreenshots() override;

    /// Standardised.
    const QList<QUrl> &urls() const { return m_urls; }
    QUrl folder() const { return m_access.folder(); }

    /// Takes over the stored list without the files that are gone.
    void load();

    /// Puts a file at the front, and has the list refreshed.
    void add(const QUrl &url);

    /// Takes a file out, and has the list refreshed; a file that is still in the folder comes back.
    void remove(const QUrl &url);

    /// Has the list made anew, soon, of its own files and the folder's newest, by modification
    /// date. What is gone or lies in another folder leaves it. Requests that come while the folder
    /// is listed are served by one more listing.
    void refresh();

Q_SIGNALS:
    /// The list has been made anew.
    void refreshed();

private:
    void listFolder();
    void refill(const QUrl &folder, const QList<QUrl> &newestFiles);
    void save();

    ScreenshotFolderAccess m_access;
    QList<QUrl> m_urls;
    bool m_isListing = false;
    bool m_isOutdated = false;
    /// One thing after the other, so that the last list is the one that stays.
    QThreadPool m_background;
};
