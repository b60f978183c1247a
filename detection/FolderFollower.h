// SPDX-License-Identifier: MIT
#pragma once

#include "detection/FolderListing.h"
#include "platform/FolderEvents.h"

#include <QObject>

#include <memory>

#include <sys/types.h>

/// The screenshot files of the folder at a path, kept current by its events. The folder may be
/// missing, be removed, come back, be replaced or be reached through links that change: each look()
/// checks which folder is at the path now, and arms the events again if it is another one.
///
/// Lives on the thread of its events.
class FolderFollower : public QObject
{
    Q_OBJECT
public:
    FolderFollower(const QUrl &folder, std::unique_ptr<FolderEvents> events);
    ~FolderFollower() override;

    /// Updates candidates() to the state at `now`. Returns whether they changed: other files, or
    /// another modification date.
    bool look(FileTime now);
    const FolderListing::Files &candidates() const { return m_listing.candidates(); }

    /// Whether something may change without changed() being emitted, so that look() must be called
    /// regularly.
    bool hasUnreported() const;

    /// When the next candidate becomes too old; `FileTime::max()` if there is none.
    FileTime nextAgeing() const { return m_listing.nextAgeing(); }

    /// Stops all reports and closes all descriptors.
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
