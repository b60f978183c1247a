// SPDX-License-Identifier: MIT
#include "tray/PanelHistory.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace std::chrono_literals;

namespace
{

constexpr QRect left(0, 0, 1600, 1000);
constexpr QRect right(1600, 200, 1280, 800);
constexpr QRect both(0, 0, 2880, 1000);

PanelPlace placeAt(int x, int y)
{
    return {{x, y, 620, 88}, left, both};
}

} // namespace

class PanelHistoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beforeThePanelIsShownThereIsNoPlace()
    {
        PanelHistory history;
        history.shown(placeAt(10, 20), m_now);
        QCOMPARE(history.between(m_now - 5s, m_now - 1s), QList<PanelPlace>());
    }

    void whileThePanelStandsItsPlaceIsKnown()
    {
        PanelHistory history;
        history.shown(placeAt(10, 20), m_now);
        QCOMPARE(history.between(m_now + 1s, m_now + 2s), QList{placeAt(10, 20)});
        QCOMPARE(history.between(m_now + 1h, m_now + 2h), QList{placeAt(10, 20)});
    }

    void aHiddenPanelIsRememberedForTheTimeThatItWasThere()
    {
        PanelHistory history;
        history.shown(placeAt(10, 20), m_now);
        history.hidden(m_now + 10s);
        QCOMPARE(history.between(m_now + 8s, m_now + 12s), QList{placeAt(10, 20)});
        QCOMPARE(history.between(m_now + 11s, m_now + 12s), QList<PanelPlace>());
        history.hidden(m_now + 20s);
        QCOMPARE(history.between(m_now + 11s, m_now + 30s), QList<PanelPlace>());
    }

    void aPanelThatMovedInBetweenHasBothPlaces()
    {
        PanelHistory history;
        history.shown(placeAt(10, 20), m_now);
        history.shown(placeAt(30, 40), m_now + 10s);
        QCOMPARE(history.between(m_now + 9s, m_now + 11s),
                 (QList{placeAt(10, 20), placeAt(30, 40)}));
        QCOMPARE(history.between(m_now + 11s, m_now + 12s), QList{placeAt(30, 40)});
    }

    void theSamePlaceReportedTwiceIsOne()
    {
        PanelHistory history;
        history.shown(placeAt(10, 20), m_now);
        history.shown(placeAt(10, 20), m_now + 1s);
        QCOMPARE(history.between(m_now, m_now + 2s), QList{placeAt(10, 20)});
    }

    void whatEndedMoreThanAMinuteAgoIsForgotten()
    {
        PanelHistory history;
        history.shown(placeAt(10, 20), m_now);
        history.hidden(m_now + 1s);
        history.shown(placeAt(30, 40), m_now + 60s);
        QCOMPARE(history.between(m_now, m_now).size(), 1);
        history.hidden(m_now + 62s);
        QCOMPARE(history.between(m_now, m_now + 62s), QList{placeAt(30, 40)});
    }

    void aPictureOfTheWholeDesktopShowsThePanelWhereItStood()
    {
        const PanelPlace place = {{1700, 300, 620, 88}, right, both};
        QCOMPARE(place.inPicture(both.size()), QRect(1700, 300, 620, 88));
    }

    void aPictureOfItsScreenShowsThePanelRelativeToThatScreen()
    {
        const PanelPlace place = {{1700, 300, 620, 88}, right, both};
        QCOMPARE(place.inPicture(right.size()), QRect(100, 100, 620, 88));
    }

    void ofAnyOtherPictureNothingIsKnown()
    {
        const PanelPlace place = {{1700, 300, 620, 88}, right, both};
        QCOMPARE(place.inPicture(left.size()), QRect());
        QCOMPARE(place.inPicture({640, 400}), QRect());
        QCOMPARE(place.inPicture({}), QRect());
    }

    void aPanelPartlyOutsideThePictureCoversOnlyWhatIsInside()
    {
        const PanelPlace place = {{1500, 10, 620, 88}, left, left};
        QCOMPARE(place.inPicture(left.size()), QRect(1500, 10, 100, 88));
    }

private:
    const FileTime m_now = FileTime(1'700'000'000s);
};

VELMORA_EVENTS_TEST(PanelHistoryTest)
#include "PanelHistoryTest.moc"
