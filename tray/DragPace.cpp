// SPDX-License-Identifier: MIT
#include "tray/DragPace.h"

#include <QCoreApplication>

void DragPace::begin()
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool DragPace::eventFilter(QObject *receiver, QEvent *event)
{
    if (m_isDelivering)
        return false;
    if (event->type() == QEvent::MouseButtonRelease)
        deliver();
    if (event->type() != QEvent::MouseMove)
        return false;
    if (!m_pause.isActive()) {
        m_pause.start(int(shortestPause.count()), Qt::PreciseTimer, this);
        return false;
    }
    m_waiting.reset(static_cast<QMouseEvent *>(event)->clone());
    m_receiver = receiver;
    return true;
}

void DragPace::timerEvent(QTimerEvent *)
{
    if (m_waiting)
        deliver();
    else
        m_pause.stop();
}

void DragPace::deliver()
{
    const std::unique_ptr<QMouseEvent> move = std::move(m_waiting);
    if (!move || !m_receiver)
        return;
    m_isDelivering = true;
    QCoreApplication::sendEvent(m_receiver, move.get());
    m_isDelivering = false;
}
