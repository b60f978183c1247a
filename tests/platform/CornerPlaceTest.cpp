// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/CornerPlace.h"

#include "tests/world/TestProgram.h"

#include <QTest>

namespace
{

constexpr QRect screen(100, 50, 1280, 720);

} // namespace

class CornerPlaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRectangleIsMeasuredFromItsNearestEdges_data()
    {
        QTest::addColumn<QRect>("frame");
        QTest::addColumn<bool>("isAtTop");
        QTest::addColumn<bool>("isAtLeft");
        QTest::newRow("bottom right") << QRect(716, 638, 620, 88) << false << false;
        QTest::newRow("bottom left") << QRect(144, 638, 620, 88) << false << true;
        QTest::newRow("top right") << QRect(716, 94, 620, 88) << true << false;
        QTest::newRow("top left") << QRect(144, 94, 620, 88) << true << true;
    }
    void aRectangleIsMeasuredFromItsNearestEdges()
    {
        QFETCH(const QRect, frame);
        QFETCH(const bool, isAtTop);
        QFETCH(const bool, isAtLeft);
        const CornerPlace place = CornerPlace::of(frame, screen);
        QCOMPARE(place.isAtTop, isAtTop);
        QCOMPARE(place.isAtLeft, isAtLeft);
        QCOMPARE(place.fromSide, 44);
        QCOMPARE(place.fromEnd, 44);
        QCOMPARE(place.on(screen), frame);
        // The same corner of another screen.
        const QRect other = place.on({0, 0, 2000, 1000});
        QCOMPARE(CornerPlace::of(other, {0, 0, 2000, 1000}), place);
    }

    void whatExceedsTheScreenIsMeasuredFromTheOtherEdge()
    {
        const QRect small(0, 0, 600, 300);
        const CornerPlace place = CornerPlace::of({44, -44, 620, 300}, small);
        QVERIFY(place.isAtLeft);
        QVERIFY(!place.isAtTop);
        QCOMPARE(place.fromSide, 44);
        QCOMPARE(place.fromEnd, 44);
    }
};

VELMORA_PLAIN_TEST(CornerPlaceTest)
#include "CornerPlaceTest.moc"
