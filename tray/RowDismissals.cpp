// SPDX-License-Identifier: MIT
#include "tray/RowDismissals.h"

#include <QTimer>

void RowDismissals::schedule(const QUuid &id, std::chrono::milliseconds delay)
{
    cancel(id);
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, [this, id] {
        cancel(id);
        Q_EMIT due(id);
    });
    m_timers.insert(id, timer);
    timer->start(delay);
}

void RowDismissals::cancel(const QUuid &id)
{
    if (QTimer *timer = m_timers.take(id)) {
        timer->stop();
        timer->deleteLater();
    }
}
