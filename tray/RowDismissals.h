// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QUuid>

#include <chrono>

class QTimer;

/// The moments at which rows are closed by themselves. Main thread.
class RowDismissals : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// The row is due after `delay` from now, in place of whatever was planned for it.
    void schedule(const QUuid &id, std::chrono::milliseconds delay);

    /// Nothing happens where nothing is planned.
    void cancel(const QUuid &id);

Q_SIGNALS:
    void due(const QUuid &id);

private:
    QHash<QUuid, QTimer *> m_timers;
};
