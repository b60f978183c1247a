// SPDX-License-Identifier: MIT
#pragma once

#include "detection/FolderListing.h"

#include <QList>
#include <QSet>
#include <QUrl>

/// Which candidates of a folder are new: those that the scan before did not see, that nobody asked
/// to ignore, and that were modified no earlier than `grace` before the watcher was made. Any one
/// thread.
class NewScreenshots
{
public:
    static constexpr std::chrono::seconds grace{2};

    explicit NewScreenshots(FileTime startedAt);

    /// The files that are there at the start, which are known. Those whose status was changed at
    /// `cameSince` or later came while the start was under way, and are not.
    void start(const FolderListing::Files &candidates, FileTime cameSince = FileTime::max());

    /// The new files, by file name in the order of its Unicode code points.
    QList<QUrl> scan(const FolderListing::Files &candidates);

    /// The file is never new, for as long as this object lives.
    void ignore(const QUrl &url);

    /// The file is new at the next scan, if it is there and nobody asked to ignore it.
    void forget(const QUrl &url) { m_knownFiles.remove(url); }

private:
    FileTime m_startedAt;
    QSet<QUrl> m_knownFiles;
    QSet<QUrl> m_ignoredFiles;
};
