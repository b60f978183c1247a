// SPDX-License-Identifier: MIT
#include "tray/trayFrame.h"
#include "tests/world/TestProgram.h"

#include <QTest>

class TrayFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itStandsInItsCornerAMarginAwayFromTheEdges_data()
    {
        QTest::addColumn<TrayPosition>("position");
        QTest::addColumn<QPoint>("corner");
        QTest::newRow("bottomRight") << TrayPosition::bottomRight << QPoint(936, 812);
        QTest::newRow("topRight") << TrayPosition::topRight << QPoint(936, 74);
        QTest::newRow("bottomLeft") << TrayPosition::bottomLeft << QPoint(44, 812);
        QTest::newRow("topLeft") << TrayPosition::topLeft << QPoint(44, 74);
    }

    void itStandsInItsCornerAMarginAwayFromTheEdges()
    {
        QFETCH(const TrayPosition, position);
        QFETCH(const QPoint, corner);
        // A screen of 1600 by 1000 with a bar of 30 points at the top and one of 56 at the bottom.
        const QRect available(0, 30, 1600, 914);
        QCOMPARE(trayFrame(available, 1, position), QRect(corner, QSize(620, 88)));
    }

    void itsHeightFollowsItsRows_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("height");
        QTest::newRow("none") << 0 << 16;
        QTest::newRow("one") << 1 << 88;
        QTest::newRow("two") << 2 << 166;
        QTest::newRow("three") << 3 << 244;
    }

    void itsHeightFollowsItsRows()
    {
        QFETCH(const int, rows);
        QFETCH(const int, height);
        const QRect available(0, 0, 1600, 1000);
        const QRect atTheBottom = trayFrame(available, rows, TrayPosition::bottomRight);
        QCOMPARE(atTheBottom.size(), QSize(620, height));
        QCOMPARE(atTheBottom.bottom(), 999 - 44);
        QCOMPARE(trayFrame(available, rows, TrayPosition::topRight).top(), 44);
    }

    void itStandsOnTheScreenThatIsGiven()
    {
        const QRect second(1600, -200, 1280, 800);
        QCOMPARE(trayFrame(second, 1, TrayPosition::topLeft).topLeft(), QPoint(1644, -156));
        QCOMPARE(trayFrame(second, 1, TrayPosition::bottomRight).bottomRight(),
                 QPoint(2879 - 44, 599 - 44));
    }

    void aScreenThatIsTooSmallKeepsTheLeftAndTheBottomMargin_data()
    {
        QTest::addColumn<TrayPosition>("position");
        for (const auto &entry : optionCases<TrayPosition>())
            QTest::newRow(qPrintable(entry.rawValue)) << entry.option;
    }

    void aScreenThatIsTooSmallKeepsTheLeftAndTheBottomMargin()
    {
        QFETCH(const TrayPosition, position);
        const QRect frame = trayFrame(QRect(10, 20, 640, 200), 3, position);
        QCOMPARE(frame.left(), 10 + 44);
        QCOMPARE(frame.bottom(), 20 + 200 - 1 - 44);
        QCOMPARE(frame.size(), QSize(620, 244));
    }
};

VELMORA_WIDGETS_TEST(TrayFrameTest)
#include "TrayFrameTest.moc"
