// SPDX-License-Identifier: MIT
#include "tests/search/ScreenshotSearchFixture.h"
#include "tests/world/BusyProcessor.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QElapsedTimer>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// When screenshots are read, and what reading gives way to.
class BackgroundReadingTest : public QObject, private ScreenshotSearchFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void aNewScreenshotIsReadWhenItHasItsNameAndIsFoundByItsApplication()
    {
        m_search->keepTexts();
        m_isBusy = true;
        const QUrl url = picture(u"new.png"_s, 43);
        m_search->arrived(url, u"Gazette"_s);
        // The folder's listing has it, too.
        const auto isListed = [this] {
            m_search->lookAgain();
            return m_search->progress().result().all == 1;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isListed(), patience);
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 0; }, 4000ms));
        move(url, u"named.png"_s, Place::Folder);
        m_isBusy = false;
        QTRY_COMPARE_WITH_TIMEOUT(found(u"gazette 43"_s), QStringList{u"named.png"_s}, patience);
    }

    void whatIsBeingReadGivesWayToANewScreenshot()
    {
        m_recognizer->hold();
        picture(u"old.png"_s, 41);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(m_recognizer->begun, 1, patience);
        m_isBusy = true;
        m_search->arrived(picture(u"new.png"_s, 42), {});
        QTRY_COMPARE_WITH_TIMEOUT(m_recognizer->abandoned, 1, patience);
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 1; }, 500ms));
        m_recognizer->letRead();
        m_isBusy = false;
        QTRY_COMPARE_WITH_TIMEOUT(read(), 2, patience);
    }

    void nothingIsReadIfAScreenshotArrivesWhileTheNextOneIsLookedUp()
    {
        picture(u"old.png"_s, 41);
        const QUrl url = picture(u"new.png"_s, 42);
        m_isBusy = true;
        m_search->keepTexts();
        // Emitted just before the search asks the database what to read.
        bool hasArrived = false;
        const auto arrive = [&] {
            if (!std::exchange(hasArrived, true))
                m_search->arrived(url, {});
        };
        connect(m_search.get(), &ScreenshotSearch::changed, this, arrive, Qt::QueuedConnection);
        QTRY_VERIFY_WITH_TIMEOUT(hasArrived, patience);
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 0; }, 4000ms));
        m_isBusy = false;
        QTRY_COMPARE_WITH_TIMEOUT(read(), 2, patience);
    }

    void aLowBatteryIsLeftAlone()
    {
        m_power->level = BackgroundReader::leastBattery - 1;
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_VERIFY_WITH_TIMEOUT(m_power->asked > 0, patience);
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 0; }, 500ms));
        QCOMPARE(found(u"a"_s), QStringList{u"a.png"_s});
    }

    void nothingIsReadWhileOtherPicturesNeedTheMemory()
    {
        const auto others = m_budget->reserve(m_budget->total());
        QVERIFY(others);
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_VERIFY_WITH_TIMEOUT(m_power->asked > 0, patience);
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 0; }, 500ms));
        QCOMPARE(found(u"a"_s), QStringList{u"a.png"_s});
    }

    void theEndDoesNotWaitForAPageToBeRead()
    {
        m_recognizer->hold();
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(m_recognizer->begun, 1, patience);
        m_search.reset();
        QTRY_COMPARE_WITH_TIMEOUT(m_recognizer->abandoned, 1, patience);
    }

    void theEndDoesNotWaitForAThreadThatGetsNoProcessorTime()
    {
        const BusyProcessor busy;
        std::atomic_bool isStarved = false;
        const auto readSlowly = [&](const QImage &) {
            busy.bindThread();
            isStarved = true;
            // As long as a line takes.
            const auto cpuTime = [] {
                timespec time = {};
                ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
                return time.tv_sec * 1000 + time.tv_nsec / 1'000'000;
            };
            for (const auto end = cpuTime() + 100; cpuTime() < end;)
                ;
            return QStringList();
        };
        m_recognizer = std::make_shared<FakeTextRecognizer>(readSlowly);
        start();
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_VERIFY_WITH_TIMEOUT(isStarved, 60'000);
        QElapsedTimer timer;
        timer.start();
        m_search.reset();
        QVERIFY2(timer.elapsed() < 10'000, qPrintable(QString::number(timer.elapsed())));
    }
};

VELMORA_EVENTS_TEST(BackgroundReadingTest)
#include "BackgroundReadingTest.moc"
