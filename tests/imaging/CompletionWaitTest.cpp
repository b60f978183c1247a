// SPDX-License-Identifier: MIT
#include "imaging/CompletionWait.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace std::chrono_literals;
using Answer = FileWriters::Answer;
using Step = CompletionWait::Step;

class CompletionWaitTest : public QObject
{
    Q_OBJECT

    const CompletionWait::Time m_start = CompletionWait::Time(1h);

    static FileIdentity sized(qint64 bytes)
    {
        FileIdentity identity;
        identity.device = 1;
        identity.serial = 7;
        identity.size = bytes;
        identity.modified = bytes;
        return identity;
    }

    CompletionWait fresh(qint64 bytes) const { return {sized(bytes), 0ms, m_start}; }

private Q_SLOTS:
    void aFileThatItsWriterHasClosedIsDecodedAtOnce()
    {
        CompletionWait wait = fresh(100);
        QCOMPARE(wait.probed(Answer::None, sized(100), m_start), Step::Decode);
        QCOMPARE(wait.decoded(true, sized(100), m_start + 50ms), Step::Finish);
    }

    void aFileThatIsWrittenIsNotDecoded()
    {
        CompletionWait wait = fresh(100);
        QCOMPARE(wait.probed(Answer::Some, sized(100), m_start), Step::Wait);
        QCOMPARE(wait.probed(Answer::Some, sized(100), m_start + 9s), Step::Wait);
        QCOMPARE(wait.probed(Answer::None, sized(900), m_start + 9100ms), Step::Decode);
    }

    void aFileThatIsThereToItsEndIsDecodedThoughItsWriterKeepsItOpen()
    {
        CompletionWait wait = fresh(100);
        int asked = 0;
        bool isWhole = false;
        const auto reachesEnd = [&] {
            ++asked;
            return isWhole;
        };
        QCOMPARE(wait.probed(Answer::Some, sized(100), m_start + 199ms, reachesEnd), Step::Wait);
        QCOMPARE(asked, 0);
        QCOMPARE(wait.probed(Answer::Some, sized(100), m_start + 200ms, reachesEnd), Step::Wait);
        QCOMPARE(wait.probed(Answer::Some, sized(100), m_start + 300ms, reachesEnd), Step::Wait);
        QCOMPARE(asked, 1);
        isWhole = true;
        QCOMPARE(wait.probed(Answer::Some, sized(900), m_start + 400ms, reachesEnd), Step::Wait);
        QCOMPARE(wait.probed(Answer::Some, sized(900), m_start + 599ms, reachesEnd), Step::Wait);
        QCOMPARE(wait.probed(Answer::Some, sized(900), m_start + 600ms, reachesEnd), Step::Decode);
        QCOMPARE(wait.decoded(true, sized(900), m_start + 650ms), Step::Finish);
    }

    void whatReachesItsEndAndCantBeReadIsWaitedForWhileItIsOpen()
    {
        CompletionWait wait = fresh(100);
        const auto reachesEnd = [] { return true; };
        QCOMPARE(wait.probed(Answer::Some, sized(100), m_start + 200ms, reachesEnd), Step::Decode);
        QCOMPARE(wait.decoded(false, sized(100), m_start + 210ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::Some, sized(100), m_start + 300ms, reachesEnd), Step::Wait);
        QCOMPARE(wait.probed(Answer::None, sized(200), m_start + 400ms, reachesEnd), Step::Decode);
    }

    void aPictureThatChangedWhileItWasDecodedIsDecodedAgain()
    {
        CompletionWait wait = fresh(100);
        QCOMPARE(wait.probed(Answer::None, sized(100), m_start), Step::Decode);
        QCOMPARE(wait.decoded(true, sized(200), m_start + 50ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::None, sized(200), m_start + 60ms), Step::Decode);
        QCOMPARE(wait.decoded(true, sized(200), m_start + 90ms), Step::Finish);
    }

    void aBrokenFileIsDecodedOnceAndGivenUpSoonAfterItsLastChange()
    {
        CompletionWait wait = fresh(100);
        QCOMPARE(wait.probed(Answer::None, sized(100), m_start), Step::Decode);
        QCOMPARE(wait.decoded(false, sized(100), m_start), Step::Wait);
        QCOMPARE(wait.probed(Answer::None, sized(100), m_start + 1s), Step::Wait);
        QCOMPARE(wait.probed(Answer::None, sized(150), m_start + 1500ms), Step::Decode);
        QCOMPARE(wait.decoded(false, sized(150), m_start + 1500ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::None, sized(150), m_start + 3400ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::None, sized(150), m_start + 3500ms), Step::GiveUp);
    }

    void aBrokenFileThatHasNotChangedForLongIsGivenUpAtOnce()
    {
        CompletionWait wait(sized(100), 1h, m_start);
        QCOMPARE(wait.probed(Answer::None, sized(100), m_start), Step::Decode);
        QCOMPARE(wait.decoded(false, sized(100), m_start), Step::GiveUp);
    }

    void aBrokenFileIsNotGivenUpWhileSomebodyWritesIt()
    {
        CompletionWait wait = fresh(100);
        QCOMPARE(wait.probed(Answer::None, sized(100), m_start), Step::Decode);
        QCOMPARE(wait.decoded(false, sized(100), m_start), Step::Wait);
        QCOMPARE(wait.probed(Answer::Some, sized(100), m_start + 5s), Step::Wait);
    }

    void anEmptyFileIsWaitedForUpToTheLimit()
    {
        CompletionWait wait = fresh(0);
        QCOMPARE(wait.probed(Answer::None, sized(0), m_start), Step::Decode);
        QCOMPARE(wait.decoded(false, sized(0), m_start), Step::Wait);
        QCOMPARE(wait.probed(Answer::None, sized(0), m_start + 9s), Step::Wait);
        QCOMPARE(wait.probed(Answer::None, sized(0), m_start + 10s), Step::GiveUp);

        CompletionWait old(sized(0), 10s, m_start);
        QCOMPARE(old.probed(Answer::None, sized(0), m_start), Step::Decode);
        QCOMPARE(old.decoded(false, sized(0), m_start), Step::GiveUp);
    }

    void whereNobodyTellsAFileThatCannotBeReadIsWaitedForUpToTheLimit()
    {
        CompletionWait wait = fresh(100);
        QCOMPARE(wait.probed(Answer::Unknown, sized(100), m_start + 200ms), Step::Decode);
        QCOMPARE(wait.decoded(false, sized(100), m_start + 200ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::Unknown, sized(100), m_start + 9s), Step::Wait);
        QCOMPARE(wait.probed(Answer::Unknown, sized(200), m_start + 9500ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::Unknown, sized(200), m_start + 9800ms), Step::Decode);
        QCOMPARE(wait.decoded(true, sized(200), m_start + 9810ms), Step::Finish);
    }

    void whereNobodyTellsASteadyFileIsDecoded()
    {
        CompletionWait wait = fresh(100);
        QCOMPARE(wait.probed(Answer::Unknown, sized(100), m_start), Step::Wait);
        QCOMPARE(wait.probed(Answer::Unknown, sized(200), m_start + 100ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::Unknown, sized(200), m_start + 249ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::Unknown, sized(200), m_start + 250ms), Step::Decode);
        QCOMPARE(wait.decoded(false, sized(200), m_start + 260ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::Unknown, sized(300), m_start + 400ms), Step::Wait);
        QCOMPARE(wait.probed(Answer::Unknown, sized(300), m_start + 550ms), Step::Decode);
        QCOMPARE(wait.decoded(true, sized(300), m_start + 560ms), Step::Finish);
    }

    void whereNobodyTellsAnOldFileIsDecodedAtOnce()
    {
        CompletionWait wait(sized(100), 1min, m_start);
        QCOMPARE(wait.probed(Answer::Unknown, sized(100), m_start), Step::Decode);
    }

    void atTheLimitTheFileIsTriedOnceAsItIs()
    {
        CompletionWait readable = fresh(100);
        QCOMPARE(readable.probed(Answer::Some, sized(100), m_start), Step::Wait);
        QCOMPARE(readable.probed(Answer::Some, sized(900), m_start + 10s), Step::Decode);
        QCOMPARE(readable.decoded(true, sized(950), m_start + 10s), Step::Finish);

        CompletionWait broken = fresh(100);
        QCOMPARE(broken.probed(Answer::Some, sized(900), m_start + 10s), Step::Decode);
        QCOMPARE(broken.decoded(false, sized(900), m_start + 10s), Step::GiveUp);

        CompletionWait changing = fresh(100);
        QCOMPARE(changing.probed(Answer::Some, sized(900), m_start + 10s), Step::Decode);
        QCOMPARE(changing.decoded(false, sized(950), m_start + 10s), Step::GiveUp);
    }

    void thePausesGrowAndStayShort()
    {
        CompletionWait wait = fresh(100);
        std::chrono::milliseconds last = 0ms;
        for (int look = 0; look < 100; ++look) {
            const std::chrono::milliseconds pause = wait.pause(m_start + 1h);
            QVERIFY(pause >= last);
            QVERIFY(pause > 0ms);
            QVERIFY(pause <= 100ms);
            last = pause;
        }
    }

    void aPauseEndsWhenAnUnchangedFileCountsAsComplete()
    {
        CompletionWait wait = fresh(100);
        QCOMPARE(wait.probed(Answer::Some, sized(100), m_start), Step::Wait);
        for (int look = 0; look < 5; ++look)
            wait.pause(m_start + 100ms);
        QCOMPARE(wait.pause(m_start + 187ms), 13ms);
        QCOMPARE(wait.pause(m_start + 200ms), 100ms);
    }
};

VELMORA_PLAIN_TEST(CompletionWaitTest)
#include "CompletionWaitTest.moc"
