// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QUuid>

#include <chrono>

class QTimer;
enum class TrayDuration;

/// When rows are dismissed automatically. Main thread.
class RowDismissals : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Makes the row due after `delay`, instead of any time scheduled before.
    void schedule(const QUuid &id, std::chrono::milliseconds delay);

    /// Does nothing for rows that stay until the user dismisses them.
    void schedule(const QUuid &id, TrayDuration duration);

    /// Does nothing if nothing is scheduled.
    void cancel(const QUuid &id);

Q_SIGNALS:
    void due(const QUuid &id);

private:
    QHash<QUuid, QTimer *> m_timers;
};
