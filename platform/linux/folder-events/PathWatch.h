// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/folder-events/MountTable.h"

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QObject>

/// Reports when a path may lead elsewhere, or to other content: when a folder, link or file on the
/// path is made, removed, renamed or replaced, when a folder before its end gets other permissions,
/// when the file at its end was written, and when something is mounted or unmounted on the path.
/// The path need not exist. Lives on one thread with an event loop.
class PathWatch : public QObject
{
    Q_OBJECT
public:
    enum class End { Folder, File };

    PathWatch();
    ~PathWatch() override;

    /// Also watches `path`, and returns whether changed() reports every change. False on file
    /// systems that other machines change, and where the path can't be watched. Any thread; blocks
    /// on the file system.
    bool watch(const QByteArray &path, End end);

Q_SIGNALS:
    void changed();

private:
    enum class Place { OnTheWay, AtTheEnd };

    bool watchWay(const QByteArray &path, End end, const MountTable::Mounts &mounts);
    void noteMounts(const QByteArray &entry, const MountTable::Mounts &mounts);
    bool watchEntry(const QByteArray &folder, const QByteArray &name, Place place, End end);
    void read();
    void compareMounts();
    bool concerns(const struct inotify_event &event, const char *name);

    int m_events = -1;
    MountTable m_mountTable;
    QMutex m_lock;
    /// What is mounted at each entry of the path.
    MountTable::Mounts m_mounts;
    /// By watch: the entries of its folder that matter.
    QHash<int, QHash<QByteArray, Place>> m_names;
};
