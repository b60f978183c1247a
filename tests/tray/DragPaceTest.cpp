// SPDX-License-Identifier: MIT
#include "tray/DragPace.h"
#include "tests/world/TestProgram.h"

#include <QTest>

namespace
{

/// Records the mouse events that it gets.
class Receiver : public QObject
{
public:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::MouseMove)
            heard.append(int(static_cast<QMouseEvent *>(event)->position().x()));
        if (event->type() == QEvent::MouseButtonRelease)
            heard.append(release);
        return true;
    }

    static constexpr int release = -1;
    QList<int> heard;
};

void send(QObject &receiver, QEvent::Type type, int x)
{
    const QPointF place(x, 0);
    QMouseEvent event(type, place, place, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&receiver, &event);
}

} // namespace

class DragPaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ofManyMovesTheFirstComesAtOnceAndTheLastAfterAPause()
    {
        DragPace pace;
        pace.begin();
        Receiver receiver;
        for (int x = 1; x <= 100; ++x)
            send(receiver, QEvent::MouseMove, x);
        QCOMPARE(receiver.heard, QList<int>{1});
        QTRY_COMPARE(receiver.heard, (QList<int>{1, 100}));
    }

    void theLastMoveComesBeforeTheRelease()
    {
        DragPace pace;
        pace.begin();
        Receiver receiver;
        for (int x = 1; x <= 3; ++x)
            send(receiver, QEvent::MouseMove, x);
        send(receiver, QEvent::MouseButtonRelease, 3);
        QCOMPARE(receiver.heard, (QList<int>{1, 3, Receiver::release}));
    }

    void aDestroyedReceiverGetsNothing()
    {
        DragPace pace;
        pace.begin();
        {
            Receiver receiver;
            send(receiver, QEvent::MouseMove, 1);
            send(receiver, QEvent::MouseMove, 2);
        }
        Receiver other;
        send(other, QEvent::MouseButtonRelease, 3);
        QCOMPARE(other.heard, QList<int>{Receiver::release});
    }

    void afterTheDragNothingIsHeldBack()
    {
        Receiver receiver;
        {
            DragPace pace;
            pace.begin();
        }
        for (int x = 1; x <= 3; ++x)
            send(receiver, QEvent::MouseMove, x);
        QCOMPARE(receiver.heard, (QList<int>{1, 2, 3}));
    }
};

VELMORA_EVENTS_TEST(DragPaceTest)

#include "DragPaceTest.moc"
