#pragma once

#include <QList>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <functional>

/// What the recent list must know of the screenshot folder. None of it fails. Main thread.
struct ScreenshotFolderAccess {
    using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

    /// The current screenshot folder.
    std::function<QUrl()> folder;
    /// At most so many screenshots of a folder, newest first.
    std::function<QList<QUrl>(const QUrl &folder, int limit)> newestFiles;
    /// When a file was last modified; a moment before all others where that can't be read.
    std::function<Date(const QUrl &)> modificationDate;
};

/// The latest screenshots, newest first, at most ten, no two equal, kept from one launch to the
/// next. Each change is written at once; the stored list is always a whole one. Main thread.
class RecentScreenshots : public QObject
{
    Q_OBJECT
public:
    explicit RecentScreenshots(ScreenshotFolderAccess access, QObject *parent = nullptr);

    /// Standardised.
    const QList<QUrl> &urls() const { return m_urls; }
    QUrl folder() const { return m_access.folder(); }

    /// Takes over the stored list without the files that are gone.
    void load();

    /// Puts a file into the list and refreshes it.
    void add(const QUrl &url);

    /// Takes a file out of the list and refreshes it; a file that is still in the folder comes
    /// back.
    void remove(const QUrl &url);

    /// Makes the list anew of its own files and the folder's newest, by modification date. What is
    /// gone or lies in another folder leaves it.
    void refresh();

Q_SIGNALS:
    /// The list has been made anew.
    void refreshed();

private:
    void refill();

    ScreenshotFolderAccess m_access;
    QList<QUrl> m_urls;
};
