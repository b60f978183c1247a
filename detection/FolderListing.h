// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileTime.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <map>
#include <optional>

/// The current screenshot files of one folder. Where the file system reports every change of an
/// entry, only the reported entries are checked, and those whose changes cannot be reported. Both
/// ways have the same result.
///
/// Where changes are not reported, a look checks the folder's own modification date, and lists the
/// folder if that has changed: a file that is added, removed or renamed is seen at once. Writing
/// into a file does not change that date, and neither does a second change within one tick of the
/// file system's clock. So the folder is also listed after a pause: long enough that listing takes
/// 1 % of the time, and at most `longestPause`. Such a change is seen that late. The result differs
/// from listing at each look in only one case: a file's date changes to an old one and back within
/// one pause, and the file is not seen as new a second time.
///
/// A candidate is an entry of any kind that is not hidden, whose extension is "png", "jpg", "jpeg",
/// "heic" or "tiff" in any case, and whose own modification date is in the future or less than
/// `candidatePeriod` ago. A name that is not UTF-8 has no URL and is never a candidate. A folder
/// that cannot be listed has no candidates.
///
/// One blind spot where changes are reported: an old file with a single name gets a second name in
/// another folder and is rewritten through that one. The system reports neither, and only the next
/// listing finds it.
///
/// Not thread-safe. look() blocks for the file system.
class FolderListing
{
public:
    static constexpr std::chrono::seconds candidatePeriod{180};
    static constexpr std::chrono::seconds longestPause{2};

    struct File {
        QUrl url; ///< standardised
        FileTime modified;
        FileTime changed;
    };
    using Files = QHash<QByteArray, File>; ///< by file name

    explicit FolderListing(const QUrl &folder);

    /// Whether entriesChanged() and listAgain() are called, from now on, for every change that is
    /// made to an entry by its name in the folder. Initially false. The next look() lists the
    /// folder if they are called now, or were before.
    void setReported(bool reported);
    void entriesChanged(const QStringList &names);
    void listAgain();

    /// Updates candidates() to the state at `now`. Returns whether they changed: other files, or
    /// another modification date.
    bool look(FileTime now);

    const Files &candidates() const { return m_files; }

    /// Whether something may change unreported, so that look() must be called regularly.
    bool hasUnreported() const { return !m_isReported || m_listAgain || !m_unreported.empty(); }

    /// When the next candidate becomes too old; `FileTime::max()` if there is none.
    FileTime nextAgeing() const { return m_nextAgeing; }

private:
    using Clock = std::chrono::steady_clock;

    /// Which folder is at the path, and when an entry of it was last added or removed.
    struct FolderState {
        FolderState() = default;
        explicit FolderState(const struct stat &status);
        bool operator==(const FolderState &) const = default;

        dev_t device = 0;
        ino_t inode = 0;
        FileTime modified = FileTimes::distantPast;
    };

    bool hasFolderMoved() const;
    void list();
    bool readEntries(Files &files);
    void lookAtChangedEntries();
    void gatherAged();
    void gatherUnreported();
    void lookAt(const QByteArray &name);
    std::optional<File> judge(const QByteArray &name, const struct stat &status);
    void keep(const QByteArray &name, const File &file);
    void forget(const QByteArray &name);
    QUrl urlOf(const QByteArray &name) const;

    QString m_folder;
    QByteArray m_path;
    bool m_isReported = false;
    bool m_listAgain = true;
    bool m_altered = false;
    FileTime m_now = FileTimes::distantPast;
    FileTime m_nextAgeing = FileTime::max();
    FolderState m_folderState; ///< before the last listing
    Clock::time_point m_nextListing;
    Files m_files;
    QSet<QByteArray> m_changed;
    /// Images whose changes are not reported under their name, with their inode: files with several
    /// names, and folders, whose date follows their own content.
    std::map<QByteArray, ino_t> m_unreported;
    QByteArray m_lastUnreported;
};
