// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/applications/DesktopEntry.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// The applications that are installed for the user: which desktop entries there are, and which
/// windows are theirs. A value, cheap to copy, that is read once and looked up from any thread.
///
/// An entry's id is its path below the "applications" folder with "-" for "/" and without
/// ".desktop". An entry in an earlier folder hides those of its id in later ones.
class DesktopEntries
{
public:
    /// The "applications" folders that the environment names, the user's own first.
    static QStringList standardFolders();

    /// Reads every entry of the folders. Any thread; blocks for about a tenth of a millisecond an
    /// entry.
    static DesktopEntries read(const QStringList &folders);

    /// Whether entries have come or gone since. Any thread; looks at the folders only.
    bool isOutdated() const;

    bool contains(const QString &id) const { return m_paths.contains(id); }

    /// The id of the entry that claims windows of this class or instance, to the letter.
    std::optional<QString> claimant(const QString &windowClass) const;

    /// The id of the one entry whose id, or its last part after a dot, is this name when case does
    /// not count; absent when several are.
    std::optional<QString> resembling(const QString &name) const;

    /// Reads the entry afresh. Absent when it is not there (any more).
    std::optional<DesktopEntry> entry(const QString &id) const;

private:
    void readFolder(const QString &folder, const QString &idPrefix, int depth);
    void readEntry(const QString &path, const QString &id);
    bool isBetterClaimant(const QString &id, const QString &than, const QString &windowClass) const;

    QHash<QString, QString> m_paths;
    QHash<QString, QString> m_claimants;
    QHash<QString, QStringList> m_idsByName;
    QHash<QString, bool> m_shown;
    QHash<QString, qint64> m_folderTimes;
    qint64 m_readAt = 0;
};
