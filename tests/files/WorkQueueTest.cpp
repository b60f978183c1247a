// SPDX-License-Identifier: MIT
#include "files/WorkQueue.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QTest>
#include <QThread>

using namespace std::chrono_literals;

class WorkQueueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void workIsDoneInItsOrderOnAnotherThreadAndReportedOnThisOne()
    {
        WorkQueue queue;
        QList<int> done;
        QList<int> reported;
        for (int i = 0; i < 100; ++i) {
            queue.add([this, i, &done, &reported]() -> WorkQueue::Outcome {
                done.append(QThread::currentThread() == thread() ? -1 : i);
                return [this, i, &reported] {
                    reported.append(QThread::currentThread() == thread() ? i : -1);
                };
            });
        }
        QTRY_COMPARE(reported.size(), 100);
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(done[i], i);
            QCOMPARE(reported[i], i);
        }
    }

    void finishingTellsEverythingWithoutAnEventLoop()
    {
        WorkQueue queue;
        int reported = 0;
        const auto count = [&reported]() -> WorkQueue::Outcome {
            return [&reported] { ++reported; };
        };
        for (int i = 0; i < 10; ++i)
            queue.add(count);
        // An outcome that adds more work.
        queue.add([&queue, count]() -> WorkQueue::Outcome {
            return [&queue, count] { queue.add(count); };
        });
        QVERIFY(queue.finish(10s));
        QCOMPARE(reported, 11);
    }

    void whatHangsIsWaitedForNoLongerThanAllowed()
    {
        const auto mayEnd = std::make_shared<QSemaphore>();
        const auto hasEnded = std::make_shared<QSemaphore>();
        bool reported = false;
        QElapsedTimer watch;
        watch.start();
        {
            WorkQueue queue;
            queue.add([mayEnd, hasEnded, &reported]() -> WorkQueue::Outcome {
                mayEnd->acquire();
                hasEnded->release();
                return [&reported] { reported = true; };
            });
            QVERIFY(!queue.finish(200ms));
            QVERIFY(watch.elapsed() >= 199);
        }
        QVERIFY2(watch.elapsed() < 5000, qPrintable(QString::number(watch.elapsed())));
        mayEnd->release();
        QVERIFY(hasEnded->tryAcquire(1, 10000));
        QCoreApplication::sendPostedEvents();
        QVERIFY(!reported);
    }

    void whatHasNotBegunIsDroppedAtTheEnd()
    {
        QSemaphore hasBegun;
        bool hasBegunSecond = false;
        {
            WorkQueue queue;
            queue.add([&]() -> WorkQueue::Outcome {
                hasBegun.release();
                Waiting::letPassUnheard(300ms);
                return {};
            });
            queue.add([&]() -> WorkQueue::Outcome {
                hasBegunSecond = true;
                return {};
            });
            QVERIFY(hasBegun.tryAcquire(1, 10000));
        }
        QVERIFY(!hasBegunSecond);
    }
};

VELMORA_EVENTS_TEST(WorkQueueTest)
#include "WorkQueueTest.moc"
