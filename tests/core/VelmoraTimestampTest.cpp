// SPDX-License-Identifier: MIT
#include "core/VelmoraTimestamp.h"
#include "tests/world/TestProgram.h"

#include <QRegularExpression>
#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

class VelmoraTimestampTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMomentIsYearMonthDayAndTimeOfDay()
    {
        const QDateTime moment(QDate(2026, 1, 15), QTime(9, 30, 12));
        QCOMPARE(velmoraTimestamp(moment), u"20260115-093012"_s);
    }

    void aMomentIsWrittenInTheSystemsTimeZone()
    {
        // The tests run in the time zone Europe/Berlin.
        const QDateTime summer(QDate(2026, 7, 1), QTime(22, 30), Qt::UTC);
        QCOMPARE(velmoraTimestamp(summer), u"20260702-003000"_s);
        const QDateTime winter(QDate(2026, 12, 31), QTime(23, 59, 59), Qt::UTC);
        QCOMPARE(velmoraTimestamp(winter), u"20270101-005959"_s);
    }

    void theHourCountsToTwentyThree()
    {
        const QDateTime moment(QDate(2026, 3, 2), QTime(15, 4, 5));
        QCOMPARE(velmoraTimestamp(moment), u"20260302-150405"_s);
    }

    void withoutAMomentItIsNow()
    {
        const QString before = velmoraTimestamp(QDateTime::currentDateTime());
        const QString stamp = velmoraTimestamp();
        const QString after = velmoraTimestamp(QDateTime::currentDateTime());
        QVERIFY(before <= stamp && stamp <= after);
        QVERIFY(QRegularExpression(u"\\A\\d{8}-\\d{6}\\z"_s).match(stamp).hasMatch());
    }
};

VELMORA_EVENTS_TEST(VelmoraTimestampTest)
#include "VelmoraTimestampTest.moc"
