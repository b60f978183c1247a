// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>
#include <QMouseEvent>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <memory>

/// Slows the pointer's moves down while something is dragged, in all windows of the program: no two
/// come closer than `shortestPause`, and the last one always comes.
///
/// The drag tells the target of every move without waiting for its answer. A file manager that has
/// to ask for what is dragged, and is told of the next move before it knows, may refuse the drop
/// from then on: Thunar did so in one drag of five, and in none of sixty at this pace.
class DragPace : public QObject
{
public:
    /// A frame of a display at 60 Hz, so that the picture under the pointer moves smoothly.
    static constexpr std::chrono::milliseconds shortestPause{16};

    /// Once the drag has begun: what was installed last sees the moves first.
    void begin();

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    void timerEvent(QTimerEvent *event) override;
    void deliver();

    QBasicTimer m_pause;
    std::unique_ptr<QMouseEvent> m_waiting; ///< the last move that came during the pause
    QPointer<QObject> m_receiver;
    bool m_isDelivering = false;
};
