// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSet>
#include <QSocketNotifier>
#include <QString>

#include <cstdint>

/// One inotify instance with a watch on one folder. Lives on one thread with an event loop.
class InotifyQueue : public QObject
{
    Q_OBJECT
public:
    /// What has happened since the last read.
    struct News {
        QSet<QString> names;
        bool lost = false;       ///< some events can't be reported by a name, or were lost
        bool folderGone = false; ///< the folder was deleted, moved or unmounted
    };

    ~InotifyQueue() override;

    /// Watches `folder` for the events in `mask`. False, with nothing left open, when that is not
    /// possible.
    bool open(const QByteArray &folder, uint32_t mask);
    void close();

    /// Whether readable() is emitted while there is something to read.
    void setListening(bool listening);

    News read();

Q_SIGNALS:
    void readable();

private:
    int m_descriptor = -1;
    QSocketNotifier *m_notifier = nullptr;
};
