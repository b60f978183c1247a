#pragma once

#include "filesystem/FileTime.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <map>
#include <optional>

/// The screenshot files that one folder holds at a moment. Listed afresh at each look, or, where
/// every change of an entry is told, kept up to date by looking at nothing but what was told and
/// what no one tells. Both ways have the same outcome.
///
/// A candidate is an entry of any kind that is not hidden, whose extension is "png", "jpg", "jpeg",
/// "heic" or "tiff" in any case, and whose own modification date is less than `candidatePeriod` ago
/// or in the future. A name that is not UTF-8 has no URL and is never a candidate. A folder that
/// can't be listed holds none.
///
/// One blind spot where changes are told: an old file with a single name is given a second one in
/// another folder and rewritten through that. The system tells neither, and the next listing finds
/// it.
///
/// Any one thread; look() blocks for the file system.
class FolderListing
{
public:
    static constexpr std::chrono::seconds candidatePeriod{180};

    struct File {
        QUrl url; ///< standardised
        FileTime modified;
        FileTime changed;
    };
    using Files = QHash<QByteArray, File>; ///< by file name

    explicit FolderListing(const QUrl &folder);

    /// From now on, whether entriesChanged() and listAgain() are called for every change that is
    /// made to an entry by its name in the folder. At first they are not. The next look() lists.
    void setTold(bool told);
    void entriesChanged(const QStringList &names);
    void listAgain();

    /// Brings candidates() to what they are at `now`, and tells whether they are others than
    /// before or have another modification date.
    bool look(FileTime now);

    const Files &candidates() const { return m_files; }

private:
    void list();
    bool readEntries(Files &files);
    void gatherUntold();
    void lookAtToldEntries();
    void lookAt(const QByteArray &name);
    std::optional<File> judge(const QByteArray &name, const struct stat &status);
    void keep(const QByteArray &name, const File &file);
    void forget(const QByteArray &name);
    QUrl urlOf(const QByteArray &name) const;

    QString m_folder;
    QByteArray m_path;
    bool m_told = false;
    bool m_listAgain = true;
    bool m_altered = false;
    FileTime m_now = FileTimes::distantPast;
    FileTime m_nextAgeing = FileTime::max();
    Files m_files;
    QSet<QByteArray> m_changed;
    /// Images whose changes are not told by their name, with their inode: folders, whose date
    /// follows their own content, and files with several names.
    std::map<QByteArray, ino_t> m_untold;
    QByteArray m_lastUntold;
};
