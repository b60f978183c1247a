// SPDX-License-Identifier: MIT
#include "recognition/engine/EnginePool.h"

#include "core/idleThreadPriority.h"
#include "tests/world/BusyProcessor.h"
#include "tests/world/TestProgram.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class EnginePoolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEngineThatCameBackIsTakenAgain()
    {
        EnginePool pool({});
        EnginePool::Lease lease = pool.take();
        const Engine *const first = lease.get();
        lease.reset();
        QCOMPARE(pool.waiting(), 1);
        lease = pool.take();
        QCOMPARE(lease.get(), first);
    }

    void noTwoJobsShareAnEngine()
    {
        EnginePool pool({});
        const EnginePool::Lease first = pool.take();
        const EnginePool::Lease second = pool.take();
        QVERIFY(first.get() != second.get());
    }

    void thoseThatNobodyNeedsAreReleased()
    {
        EnginePool pool({}, 50ms);
        {
            const EnginePool::Lease first = pool.take();
            const EnginePool::Lease second = pool.take();
            const EnginePool::Lease third = pool.take();
        }
        QCOMPARE(pool.waiting(), 3);
        QTRY_COMPARE_WITH_TIMEOUT(pool.waiting(), 0, 5000);
    }

    void sparesStayForTheirTime()
    {
        EnginePool pool({}, 1h);
        {
            const EnginePool::Lease first = pool.take();
            const EnginePool::Lease second = pool.take();
        }
        QCOMPARE(pool.waiting(), 2);
    }

    void threadsTakeAndGiveBackAtOnce()
    {
        EnginePool pool({}, 1ms);
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&pool] {
                for (int turn = 0; turn < 5; ++turn)
                    pool.take()->read(QImage());
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QTRY_COMPARE_WITH_TIMEOUT(pool.waiting(), 0, 5000);
    }

    void warmingUpMakesOneWhereThereIsNone()
    {
        EnginePool pool({}, 50ms);
        pool.warmUp();
        QCOMPARE(pool.waiting(), 1);
        pool.warmUp();
        QCOMPARE(pool.waiting(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(pool.waiting(), 0, 5000);
        const EnginePool::Lease atWork = pool.take();
        pool.warmUp();
        QCOMPARE(pool.waiting(), 0);
    }

    void aThreadThatGetsNoProcessorTimeKeepsNobodyWaiting()
    {
        EnginePool pool({});
        std::atomic_bool hasBegun = false;
        std::atomic_bool isServed = false;
        std::jthread starved;
        std::jthread another;
        const BusyProcessor busy;
        starved = std::jthread([&] {
            busy.bindThread();
            idleThreadPriority();
            hasBegun = true;
            pool.take();
        });
        // Even that takes such a thread some seconds.
        QTRY_VERIFY_WITH_TIMEOUT(hasBegun, 100'000);
        another = std::jthread([&] {
            pool.take();
            isServed = true;
        });
        QTRY_VERIFY_WITH_TIMEOUT(isServed, 20'000);
    }

    void aMissingModelIsNoFailure()
    {
        EnginePool pool({u"xyz"_s});
        QVERIFY(pool.take() != nullptr);
    }
};

VELMORA_PLAIN_TEST(EnginePoolTest)

#include "EnginePoolTest.moc"
