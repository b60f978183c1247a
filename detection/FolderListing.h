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

/// The screenshot files that one folder holds at a moment. Where every change of an entry is
/// reported, only the entries that were reported, and those of which nothing can be reported, are
/// looked at. Both ways have the same outcome.
///
/// Where changes are not reported, a look asks for the folder's own modification date, and lists
/// the folder when that has moved: a file that comes, goes or gets another name is seen at once.
/// Writing into a file moves it not, and neither does what happens within one tick of the file
/// system's clock. So the folder is listed in any case after a pause: long enough that listing
/// takes 1 % of the time, and at most `longestPause`. That is how late such a change is seen. Its
/// outcome is another than that of listing at each look only where a file's date changes to an old
/// one and back within one pause: it is not seen as new a second time.
///
/// A candidate is an entry of any kind that is not hidden, whose extension is "png", "jpg", "jpeg",
/// "heic" or "tiff" in any case, and whose own modification date is less than `candidatePeriod` ago
/// or in the future. A name that is not UTF-8 has no URL and is never a candidate. A folder that
/// can't be listed holds none.
///
/// One blind spot where changes are reported: an old file with a single name is given a second one
/// in another folder and rewritten through that. The system reports neither, and the next listing
/// finds it.
///
/// Any one thread; look() blocks for the file system.
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

    /// From now on, whether entriesChanged() and listAgain() are called for every change that is
    /// made to an entry by its name in the folder. At first they are not. Where they are or were,
    /// the next look() lists.
    void setReported(bool reported);
    void entriesChanged(const QStringList &names);
    void listAgain();

    /// Brings candidates() to what they are at `now`, and tells whether they are others than
    /// before or have another modification date.
    bool look(FileTime now);

    const Files &candidates() const { return m_files; }

    /// Whether something may change that nobody reports, so that one has to look again and again.
    bool hasUnreported() const { return !m_isReported || m_listAgain || !m_unreported.empty(); }

    /// When the next candidate gets too old; `FileTime::max()` when there is none.
    FileTime nextAgeing() const { return m_nextAgeing; }

private:
    using Clock = std::chrono::steady_clock;

    /// Which folder stands at the path, and when an entry of it last came or went.
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
    /// Images whose changes are not reported by their name, with their inode: folders, whose date
    /// follows their own content, and files with several names.
    std::map<QByteArray, ino_t> m_unreported;
    QByteArray m_lastUnreported;
};
