// SPDX-License-Identifier: MIT
#include "detection/FolderFollower.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

FolderFollower::FolderFollower(const QUrl &folder, std::unique_ptr<FolderEvents> events)
    : m_path(QFile::encodeName(QDir::cleanPath(folder.toLocalFile())))
    , m_listing(folder)
    , m_events(std::move(events))
{
    connect(m_events.get(), &FolderEvents::entriesChanged, this, [this](const QStringList &names) {
        m_listing.entriesChanged(names);
        Q_EMIT changed();
    });
    connect(m_events.get(), &FolderEvents::listAgain, this, [this] {
        m_listing.listAgain();
        Q_EMIT changed();
    });
    connect(m_events.get(), &FolderEvents::folderGone, this, [this] {
        m_coverage = FolderEvents::Coverage::Nothing;
        Q_EMIT changed();
    });
}

FolderFollower::~FolderFollower() = default;

bool FolderFollower::look(FileTime now)
{
    const Identity identity = identityOfFolder();
    if (m_events && (m_coverage == FolderEvents::Coverage::Nothing || identity != m_armed))
        arm(identity);
    return m_listing.look(now);
}

bool FolderFollower::hasUnreported() const
{
    return m_coverage != FolderEvents::Coverage::Missing && m_listing.hasUnreported();
}

void FolderFollower::release()
{
    m_events.reset();
    m_coverage = FolderEvents::Coverage::Nothing;
    m_listing.setReported(false);
}

/// A default-constructed identity if no folder can be reached.
FolderFollower::Identity FolderFollower::identityOfFolder() const
{
    struct stat status = {};
    if (::stat(m_path.constData(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino};
}

/// The events are certain to belong to this folder only if the path led to it before and after.
/// Otherwise the next look tries again.
void FolderFollower::arm(const Identity &identity)
{
    m_coverage = m_events->arm(QFile::decodeName(m_path));
    if (identityOfFolder() != identity)
        m_coverage = FolderEvents::Coverage::Nothing;
    m_armed = identity;
    m_listing.setReported(m_coverage == FolderEvents::Coverage::All);
}
