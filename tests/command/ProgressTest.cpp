// SPDX-License-Identifier: MIT
#include "command/Progress.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace std::chrono_literals;

class ProgressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLineSaysHowManyHowFastAndHowLong()
    {
        QCOMPARE(Progress::line(50, 200, 10s, 80),
                 "[##########..............................] 50 of 200, 5.0/s, 0:30 left");
        QCOMPARE(Progress::line(600, 6600, 20s, 40), "[........] 600 of 6600, 30/s, 3:20 left");
        QCOMPARE(Progress::line(1, 4001, 2s, 36), "1 of 4001, 0.5/s, 2:13:20 left");
    }

    void nothingIsGuessedBeforeTheFirst()
    {
        QCOMPARE(Progress::line(0, 200, 10s, 30), "[..................] 0 of 200");
    }

    void theLineIsAlwaysShorterThanTheTerminal()
    {
        for (int width = 1; width < 200; ++width)
            QVERIFY(Progress::line(123, 4567, 12s, width).size() < width);
    }

    void theLastOneFillsTheBar()
    {
        QVERIFY(Progress::line(7, 7, 1s, 60).startsWith("[#############################"));
        QVERIFY(!Progress::line(7, 7, 1s, 60).contains(".."));
        QVERIFY(Progress::line(7, 7, 1s, 60).contains("0:00 left"));
    }
};

VELMORA_PLAIN_TEST(ProgressTest)
#include "ProgressTest.moc"
