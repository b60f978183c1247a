// SPDX-License-Identifier: MIT
#include "core/BackgroundQueue.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QTest>
#include <QThread>

using namespace std::chrono_literals;

class BackgroundQueueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void workRunsInItsOrderAndBesideTheCaller()
    {
        BackgroundQueue queue;
        QList<int> order;
        queue.run([&order] { order.append(1); });
        QFuture<QThread *> future = queue.run([&order] {
            order.append(2);
            return QThread::currentThread();
        });
        QTRY_VERIFY(future.isFinished());
        QVERIFY(future.result() != QThread::currentThread());
        QCOMPARE(order, (QList<int>{1, 2}));
    }

    void workThatHangsHoldsUpNoOtherQueue()
    {
        QSemaphore released;
        BackgroundQueue hanging;
        BackgroundQueue other;
        const QFuture<void> stuck = hanging.run([&released] { released.acquire(); });
        const QFuture<int> result = other.run([] { return 7; });
        QTRY_VERIFY(result.isFinished());
        QVERIFY(!stuck.isFinished());
        released.release();
        QTRY_VERIFY(stuck.isFinished());
    }

    void whatHangsIsLeftBehindAndTheNextWorkRuns()
    {
        QSemaphore begun;
        QSemaphore released;
        BackgroundQueue queue;
        const QFuture<void> stuck = queue.run([&] {
            begun.release();
            released.acquire();
        });
        const QFuture<int> dropped = queue.run([] { return 1; });
        begun.acquire();
        QElapsedTimer timer;
        timer.start();
        queue.leaveBehind();
        QVERIFY(timer.elapsed() < 500);
        QVERIFY(dropped.isCanceled() && dropped.isFinished());
        const QFuture<int> next = queue.run([] { return 7; });
        QTRY_VERIFY(next.isFinished());
        QCOMPARE(next.result(), 7);
        QVERIFY(!stuck.isFinished());
        released.release();
        QTRY_VERIFY(stuck.isFinished());
    }

    void theEndWaitsForShortWorkOnly()
    {
        QSemaphore released;
        QSemaphore ended;
        bool isDone = false;
        {
            BackgroundQueue queue;
            queue.run([&isDone] {
                QSemaphore().tryAcquire(1, 100);
                isDone = true;
            });
            QSemaphore().tryAcquire(1, 20);
        }
        QVERIFY(isDone);
        QElapsedTimer timer;
        {
            BackgroundQueue queue;
            QSemaphore begun;
            queue.run([&] {
                begun.release();
                released.acquire();
                ended.release();
            });
            begun.acquire();
            timer.start();
        }
        QVERIFY(timer.elapsed() < 3000);
        released.release();
        ended.acquire();
    }
};

QTEST_GUILESS_MAIN(BackgroundQueueTest)
#include "BackgroundQueueTest.moc"
