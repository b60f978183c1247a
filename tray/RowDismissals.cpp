// SPDX-License-Identifier: MIT
#include "tray/RowDismissals.h"

#include "core/VelmoraSettings.h"

#include <QTimer>

using namespace std::chrono_literals;

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

void RowDismissals::schedule(const QUuid &id, TrayDuration duration)
{
    switch (duration) {
    case TrayDuration::fifteenSeconds:
        schedule(id, 15s);
        return;
    case TrayDuration::sixtySeconds:
        schedule(id, 60s);
        return;
    case TrayDuration::untilDismissed:
        return;
    }
}

void RowDismissals::cancel(const QUuid &id)
{
    if (QTimer *timer = m_timers.take(id)) {
        timer->stop();
        timer->deleteLater();
    }
}
