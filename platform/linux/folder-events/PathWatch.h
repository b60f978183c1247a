// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QObject>

class QSocketNotifier;

/// Tells when a path may lead elsewhere, or to another content of a file: when one of the folders,
/// links and files on its way is made, removed, renamed or replaced, when a folder before its end
/// gets other permissions, when the file at its end was written, and when something is mounted.
/// The path need not exist. Lives on one thread with an event loop.
class PathWatch : public QObject
{
    Q_OBJECT
public:
    enum class End { Folder, File };

    PathWatch();
    ~PathWatch() override;

    /// Watches the way to `path` too, and says whether changed() tells of everything. False on
    /// file systems that other machines change, and where the way can't be watched. Any thread;
    /// blocks for the file system.
    bool watch(const QByteArray &path, End end);

Q_SIGNALS:
    void changed();

private:
    enum class Place { OnTheWay, AtTheEnd };

    bool watchEntry(const QByteArray &folder, const QByteArray &name, Place place, End end);
    void read();
    bool concerns(const struct inotify_event &event, const char *name);

    int m_events = -1;
    int m_mounts = -1;
    QMutex m_lock;
    /// By watch: the entries of that folder that matter.
    QHash<int, QHash<QByteArray, Place>> m_names;
};
