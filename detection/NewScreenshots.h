// SPDX-License-Identifier: MIT
#pragma once

#include "detection/FolderListing.h"

#include <QList>
#include <QSet>
#include <QUrl>

/// Finds the new candidates of a folder: those that the previous scan did not see, that are not to
/// be ignored, and that were modified no earlier than `grace` before the watcher was created. Not
/// thread-safe.
class NewScreenshots
{
public:
    static constexpr std::chrono::seconds grace{2};

    explicit NewScreenshots(FileTime startedAt);

    /// Takes the existing files as known, except those whose status changed at `cameSince` or
    /// later: these arrived while the watcher was starting.
    void start(const FolderListing::Files &candidates, FileTime cameSince = FileTime::max());

    /// The system's clock shows this time now. If it was set back to before the watcher was
    /// created, for instance by a time server after the login, that counts as its creation.
    void noteTime(FileTime now);

    /// The new files, sorted by file name in code point order.
    QList<QUrl> scan(const FolderListing::Files &candidates);

    /// The file is never reported as new, for the lifetime of this object.
    void ignore(const QUrl &url);

    /// The file is new at the next scan, if it exists then and is not ignored.
    void forget(const QUrl &url) { m_knownFiles.remove(url); }

private:
    FileTime m_startedAt;
    QSet<QUrl> m_knownFiles;
    QSet<QUrl> m_ignoredFiles;
};
