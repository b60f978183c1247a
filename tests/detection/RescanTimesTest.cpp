// SPDX-License-Identifier: MIT
#include "detection/RescanTimes.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class RescanTimesTest : public QObject
{
    Q_OBJECT

    const RescanTimes::Time m_start = RescanTimes::Time(1h);

    /// When rescans are due, in milliseconds after the start, checked every millisecond.
    QString looks(RescanTimes &times) const
    {
        QStringList moments;
        for (int ms = 0; ms < 1000; ++ms) {
            if (times.takeDue(m_start + std::chrono::milliseconds(ms)))
                moments.append(QString::number(ms));
        }
        return moments.join(u' ');
    }

private Q_SLOTS:
    void withoutAnEventThereIsNone()
    {
        RescanTimes times;
        QCOMPARE(looks(times), QString());
        QVERIFY(!times.next(m_start));
    }

    void anEventIsFollowedByLooksAfter30And120And300Milliseconds()
    {
        RescanTimes times;
        times.eventAt(m_start);
        QCOMPARE(times.next(m_start), 30ms);
        QCOMPARE(times.next(m_start + 10ms), 20ms);
        QCOMPARE(times.next(m_start + 50ms), 0ms);
        QCOMPARE(looks(times), u"30 120 300"_s);
        QVERIFY(!times.next(m_start));
    }

    void noEventCancelsTheLooksOfOneBeforeIt()
    {
        RescanTimes times;
        times.eventAt(m_start);
        times.eventAt(m_start + 20ms);
        times.eventAt(m_start + 20ms + 300us);
        QCOMPARE(looks(times), u"30 50 51 120 140 141 300 320 321"_s);
    }

    void looksThatAreOverdueAreOne()
    {
        RescanTimes times;
        times.eventAt(m_start);
        QVERIFY(times.takeDue(m_start + 200ms));
        QVERIFY(!times.takeDue(m_start + 200ms));
        QCOMPARE(times.next(m_start + 200ms), 100ms);
    }
};

VELMORA_PLAIN_TEST(RescanTimesTest)
#include "RescanTimesTest.moc"
