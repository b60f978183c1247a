// SPDX-License-Identifier: MIT
#include "core/BackgroundThread.h"
#include "tests/world/TestProgram.h"

#include <QElapsedTimer>
#include <QList>
#include <QTest>

#include <atomic>
#include <semaphore>
#include <thread>

using namespace std::chrono_literals;

class BackgroundThreadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tasksAreDoneOneAfterTheOtherInTheirOrder()
    {
        constexpr int count = 1000;
        const auto done = std::make_shared<QList<int>>();
        BackgroundThread thread(1s);
        for (int i = 0; i < count; ++i)
            thread.run([done, i] { done->append(i); });
        QVERIFY(thread.waitForTasks(10s));
        QCOMPARE(done->size(), count);
        QVERIFY(std::is_sorted(done->begin(), done->end()));
    }

    void tasksThatAreAddedLaterAreNotWaitedFor()
    {
        const auto mayGoOn = std::make_shared<std::atomic_bool>(true);
        BackgroundThread thread(1s);
        // The queue is never empty, because each task adds the next one.
        std::function<void()> task = [&thread, &task, mayGoOn] {
            if (*mayGoOn)
                thread.run(task);
        };
        thread.run(task);
        const bool isDone = thread.waitForTasks(5s);
        *mayGoOn = false;
        QTRY_COMPARE(thread.tasksLeft(), size_t(0));
        QVERIFY(isDone);
    }

    void whatIsAskedForIsAnswered()
    {
        BackgroundThread thread(1s);
        QFuture<int> answer = thread.ask([] { return 42; });
        QVERIFY(thread.waitForTasks(10s));
        QCOMPARE(answer.result(), 42);
    }

    void whatIsDroppedIsCancelled()
    {
        const auto mayEnd = std::make_shared<std::binary_semaphore>(0);
        QFuture<int> answer;
        {
            BackgroundThread thread(0s);
            thread.run([mayEnd] { mayEnd->acquire(); });
            answer = thread.ask([] { return 42; });
        }
        mayEnd->release();
        QTRY_VERIFY(answer.isFinished());
        QVERIFY(answer.isCanceled());
        QVERIFY(QTest::qWaitFor([] { return !BackgroundThread::isAnyAbandoned(); }));
    }

    void itIsAnotherThreadAndAlwaysTheSame()
    {
        const auto ids = std::make_shared<QList<std::thread::id>>();
        BackgroundThread thread(1s);
        for (int i = 0; i < 2; ++i)
            thread.run([ids] { ids->append(std::this_thread::get_id()); });
        QVERIFY(thread.waitForTasks(10s));
        QVERIFY(ids->at(0) != std::this_thread::get_id());
        QVERIFY(ids->at(0) == ids->at(1));
    }

    void itsEndWaitsForWhatIsStillToBeDone()
    {
        const auto done = std::make_shared<std::atomic_int>(0);
        {
            BackgroundThread thread(10s);
            for (int i = 0; i < 100; ++i)
                thread.run([done] { ++*done; });
        }
        QCOMPARE(done->load(), 100);
        QVERIFY(!BackgroundThread::isAnyAbandoned());
    }

    void whatNeverEndsIsLeftBehind()
    {
        struct Stuck {
            std::binary_semaphore mayEnd{0};
            std::binary_semaphore ended{0};
            std::atomic_bool wentOn = false;
        };
        const auto stuck = std::make_shared<Stuck>();
        QElapsedTimer timer;
        timer.start();
        {
            BackgroundThread thread(50ms);
            thread.run([stuck] {
                stuck->mayEnd.acquire();
                stuck->ended.release();
            });
            thread.run([stuck] { stuck->wentOn = true; });
            QVERIFY(!thread.waitForTasks(20ms));
            QCOMPARE(thread.tasksLeft(), size_t(2));
        }
        QVERIFY2(timer.elapsed() < 5000, QByteArray::number(timer.elapsed()).constData());
        QVERIFY(BackgroundThread::isAnyAbandoned());
        stuck->mayEnd.release();
        stuck->ended.acquire();
        // The thread has released what it held, and has not started another task.
        QTRY_COMPARE(stuck.use_count(), 1L);
        QVERIFY(!stuck->wentOn);
        QVERIFY(QTest::qWaitFor([] { return !BackgroundThread::isAnyAbandoned(); }));
    }
};

VELMORA_EVENTS_TEST(BackgroundThreadTest)
#include "BackgroundThreadTest.moc"
