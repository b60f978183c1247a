// SPDX-License-Identifier: MIT
#pragma once

#include "detection/FolderListing.h"
#include "platform/FolderEvents.h"

#include <QObject>

#include <memory>

#include <sys/types.h>

/// The screenshot files of the folder that stands at a path, followed by its events. The folder
/// may be missing, be removed, return, be replaced or be reached through links that change: each
/// look() asks what stands at the path now, and arms the events anew when that is another folder.
///
/// Lives on the thread of its events.
class FolderFollower : public QObject
{
    Q_OBJECT
public:
    FolderFollower(const QUrl &folder, std::unique_ptr<FolderEvents> events);
    ~FolderFollower() override;

    /// Brings candidates() to what they are at `now`, and tells whether they are others than
    /// before or have another modification date.
    bool look(FileTime now);
    const FolderListing::Files &candidates() const { return m_listing.candidates(); }

    /// Whether something may change without changed(), so that one has to look again and again.
    bool hasUnreported() const;

    /// When the next candidate gets too old; `FileTime::max()` when there is none.
    FileTime nextAgeing() const { return m_listing.nextAgeing(); }

    /// Nothing is reported any more, and no descriptor stays open.
    void release();

Q_SIGNALS:
    /// Something happened in the folder or to it.
    void changed();

private:
    struct Identity {
        dev_t device = 0;
        ino_t inode = 0;

        bool operator==(const Identity &) const = default;
    };

    Identity identityOfFolder() const;
    void arm(const Identity &identity);

    QByteArray m_path;
    FolderListing m_listing;
    std::unique_ptr<FolderEvents> m_events;
    FolderEvents::Coverage m_coverage = FolderEvents::Coverage::Nothing;
    Identity m_armed;
};
