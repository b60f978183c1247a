// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/applications/DesktopEntry.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// The applications installed for the user: which desktop entries there are, and which windows
/// belong to them. A value, cheap to copy, read once and used from any thread.
///
/// An entry's id is its path below the "applications" folder with "-" for "/" and without
/// ".desktop". An entry in an earlier folder hides those with the same id in later ones.
class DesktopEntries
{
public:
    /// The "applications" folders that the environment names, the user's own first.
    static QStringList standardFolders();

    /// Reads every entry of the folders. Any thread; blocks for about a tenth of a millisecond per
    /// entry.
    static DesktopEntries read(const QStringList &folders);

    /// Whether entries were added or removed since. Any thread; looks only at the folders.
    bool isOutdated() const;

    bool contains(const QString &id) const { return m_paths.contains(id); }

    /// The id of the entry that claims windows of exactly this class or instance.
    std::optional<QString> claimant(const QString &windowClass) const;

    /// The id of the one entry whose id, or its last part after a dot, equals this name, ignoring
    /// case; absent when there are several.
    std::optional<QString> resembling(const QString &name) const;

    /// Reads the entry again. Absent when it does not exist (any more).
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
