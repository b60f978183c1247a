// SPDX-License-Identifier: MIT
#include "recognition/engine/EnginePool.h"
#include "tests/world/TestProgram.h"

#include <QTest>

#include <thread>

using namespace std::chrono_literals;

class EnginePoolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEngineThatCameBackIsTakenAgain()
    {
        EnginePool pool({});
        Engine *const first = pool.take().get();
        QCOMPARE(pool.waiting(), 1);
        QCOMPARE(pool.take().get(), first);
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

    void aMissingModelIsNoFailure()
    {
        EnginePool pool({QStringLiteral("xyz")});
        QVERIFY(pool.take() != nullptr);
    }
};

VELMORA_PLAIN_TEST(EnginePoolTest)

#include "EnginePoolTest.moc"
