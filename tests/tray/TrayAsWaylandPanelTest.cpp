// SPDX-License-Identifier: MIT
#include "tests/tray/TrayOnSwayFixture.h"
#include "tests/world/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

/// The tray on a wlroots desktop without an X server, where the compositor itself places panels.
class TrayAsWaylandPanelTest : public QObject, TrayOnSwayFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!Sway::isInstalled())
            QSKIP("sway or setpriv is not installed");
        begin(Sway::X11::No);
    }

    void cleanup() { QCOMPARE(m_tray.state(), QProcess::Running); }

    void cleanupTestCase() { end(); }

    void itStandsInItsCornerAndLeavesTheKeyboard()
    {
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(1)) || isSeenAt(trayPlace(2)), patience);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2)), patience);
        typeIntoTerminal([] {}, u"hello"_s);
        QVERIFY(staysAt(trayPlace(2)));
    }

    void aClickOnAButtonLeavesTheKeyboard()
    {
        const QImage before = photographOfPart();
        const auto clickAndSee = [&] {
            m_pointer->click(copyButtonIn(trayPlace(2)));
            // The row says so.
            QTRY_VERIFY_WITH_TIMEOUT(!whatChanged(before).isEmpty(), patience);
        };
        typeIntoTerminal(clickAndSee, u"after a button"_s);
    }

    void aClickIntoANameTakesTheKeyboardUntilTheMouseGoesElsewhere()
    {
        const auto clickName = [&] { m_pointer->click(nameIn(trayPlace(2))); };
        typeLineWhen([&] { return trayHasKeyboard(); }, clickName, u" fresh"_s);
        QTRY_VERIFY_WITH_TIMEOUT(hasPrinted("fresh"), patience);
        QVERIFY(!typed().contains(u"fresh"_s));

        const auto clickBoth = [&] {
            m_pointer->click(nameIn(trayPlace(2)) + QPoint(40, 0));
            QTRY_VERIFY_WITH_TIMEOUT(trayHasKeyboard(), patience);
            m_pointer->click({300, 300});
        };
        typeIntoTerminal(clickBoth, u"after a name"_s);
        QVERIFY(staysAt(trayPlace(2)));
    }

    void itGrowsAndShrinksWithItsRows()
    {
        m_tray.write("three.png\n");
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(3)), patience);
        QVERIFY(staysAt(trayPlace(3)));
        m_pointer->click(dismissButtonIn(trayPlace(3)));
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2)), patience);
        QVERIFY(staysAt(trayPlace(2)));
    }

    void itGoesWithItsLastRowAndComesBackWithTheNext()
    {
        m_pointer->click(dismissButtonIn(trayPlace(2)));
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(1)), patience);
        m_pointer->click(dismissButtonIn(trayPlace(1)));
        QTRY_VERIFY_WITH_TIMEOUT(!isSeenAt(trayPlace(1)), patience);
        m_tray.write("again.png\n");
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(1)), patience);
        typeIntoTerminal([] {}, u"still here"_s);
        QVERIFY(staysAt(trayPlace(1)));
    }

    void aToolTipStandsBesideItsWidgetAndGoesWithTheMouse()
    {
        m_pointer->moveTo({300, 300});
        const QImage before = photographOfPart();
        for (const QPoint &place : {copyButtonIn(trayPlace(1)), dismissButtonIn(trayPlace(1))}) {
            m_pointer->moveTo(place);
            // Below the mouse and a little to the right, or moved to where there is room.
            const QRect expected(place + QPoint(-80, 12), QSize(160, 60));
            const auto isThere = [&] { return whatChanged(before).intersects(expected); };
            QTRY_VERIFY_WITH_TIMEOUT(isThere(), patience);
            QCOMPARE(windows(), 1);
        }
        m_pointer->moveTo({300, 300});
        QTRY_VERIFY_WITH_TIMEOUT(whatChanged(before).isEmpty(), patience);
    }

    void theMenuOfANameCanBeUsedAndAClickElsewhereClosesIt()
    {
        m_pointer->moveTo({300, 300});
        const QImage before = photographOfPart();
        const auto menu = [&] { return whatChanged(before); };
        const auto chooseSelectAll = [&] {
            m_pointer->rightClick(nameIn(trayPlace(1)));
            QTRY_VERIFY_WITH_TIMEOUT(menu().height() > 120 && trayHasKeyboard(), patience);
            QCOMPARE(windows(), 1);
            // The last entry, above the mouse.
            m_pointer->click(nameIn(trayPlace(1)) + QPoint(60, -10));
        };
        const auto isClosed = [&] { return menu().height() < 120; };
        typeLineWhen(isClosed, chooseSelectAll, u"whole"_s);
        QTRY_VERIFY_WITH_TIMEOUT(hasPrinted("whole.png\n"), patience);

        const auto openAndLeave = [&] {
            m_pointer->rightClick(nameIn(trayPlace(1)) + QPoint(40, 0));
            QTRY_VERIFY_WITH_TIMEOUT(menu().height() > 120 && trayHasKeyboard(), patience);
            m_pointer->click({300, 300});
            QTRY_VERIFY_WITH_TIMEOUT(isClosed(), patience);
        };
        typeIntoTerminal(openAndLeave, u"after a menu"_s);
        QVERIFY(staysAt(trayPlace(1)));
    }

    void aSoftShadowSurroundsItAndLetsTheMouseThrough()
    {
        const QRect place = trayPlace(1);
        m_pointer->moveTo({300, 300});
        const auto darkness = [](const QPoint &at, const QImage &seen) {
            return 255 - qGray(seen.pixel(at));
        };
        const auto hasShadow = [&] {
            const QImage seen = photograph();
            const int below = darkness({place.center().x(), place.bottom() + 6}, seen);
            const int beside = darkness({place.left() - 6, place.center().y()}, seen);
            const int beyond = darkness({place.left() - 40, place.center().y()}, seen);
            return below > beside && beside > 5 && beyond == 0 && below < 100;
        };
        QTRY_VERIFY_WITH_TIMEOUT(hasShadow(), patience);
        const auto clickAndLeave = [&] {
            m_pointer->click(nameIn(place));
            QTRY_VERIFY_WITH_TIMEOUT(trayHasKeyboard(), patience);
            m_pointer->moveTo(place.bottomLeft() + QPoint(100, 6));
        };
        typeIntoTerminal(clickAndLeave, u"through the shadow"_s);
    }

    void anotherCornerInTheSettingsMovesItAtOnce()
    {
        m_tray.write("corner topLeft\n");
        const QRect place({44, 44}, trayPlace(1).size());
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(place), patience);
        QVERIFY(staysAt(place));
        m_tray.write("corner bottomRight\n");
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(1)), patience);
        QVERIFY(staysAt(trayPlace(1)));
    }

    void itIsSeenOverAFullScreenWindow()
    {
        m_sway->command(u"fullscreen enable"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(1)), patience);
        m_tray.write("over.png\n");
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2)), patience);
        typeIntoTerminal([] {}, u"full"_s);
        QVERIFY(staysAt(trayPlace(2)));
        m_sway->command(u"fullscreen disable"_s);
    }

    void aDraggedPictureReachesAWaylandWindow()
    {
        QProcess target;
        qputenv("QT_QPA_PLATFORM", "wayland");
        m_sway->start(target, QString::fromUtf8(DROP_TARGET), {u"0"_s, u"0"_s, u"9"_s, u"9"_s});
        qputenv("QT_QPA_PLATFORM", "xcb");
        QByteArray output;
        const auto hasShown = [&](const char *word) {
            output += target.readAllStandardOutput();
            return output.contains(word);
        };
        QTRY_VERIFY_WITH_TIMEOUT(hasShown("ready") && windows() == 2, patience);
        const auto drag = [&] {
            output.clear();
            const QPoint start = thumbnailIn(trayPlace(2));
            m_pointer->moveTo(start);
            m_pointer->press();
            for (const QPoint &place :
                 {start - QPoint(4, 0), start - QPoint(0, 40), QPoint(900, 300), QPoint(905, 305)})
                m_pointer->moveTo(place);
            const bool isOver = QTest::qWaitFor([&] { return hasShown("over"); }, patience);
            m_pointer->release();
            // The desktop may have heard of the release before it heard that the drop is welcome.
            return isOver && QTest::qWaitFor([&] { return hasShown("}\n"); }, 1000);
        };
        QVERIFY(QTest::qWaitFor(drag, patience));
        const QByteArray dropped = output.mid(output.indexOf("dropped ") + 8);
        const QJsonObject got = QJsonDocument::fromJson(dropped).object();
        QVERIFY(got[u"urls"_s].toArray().first().toString().endsWith(u"/over.png"_s));
        QVERIFY(staysAt(trayPlace(2)));
        target.kill();
        target.waitForFinished();
    }

    void itFollowsTheScaleOfItsScreen()
    {
        m_sway->command(u"output HEADLESS-1 resolution 2560x1440 scale 2"_s);
        QTRY_VERIFY_WITH_TIMEOUT(photograph().width() == 2560, patience);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2), 2), patience);
        m_tray.write("sharp.png\n");
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(3), 2), patience);
        QVERIFY(staysAt(trayPlace(3), 2));
        m_sway->command(u"output HEADLESS-1 resolution 1280x720 scale 1"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(3)), patience);
    }

private:
    void typeIntoTerminal(const std::function<void()> &act, const QString &text)
    {
        typeLineWhen([&] { return terminalHasKeyboard() && !trayHasKeyboard(); }, act, text);
        QTRY_VERIFY_WITH_TIMEOUT(typed().endsWith(text), patience);
    }

    /// How many windows sway manages. The tray and its pop-ups are none.
    int windows() const
    {
        const QByteArray tree = QJsonDocument(m_sway->tree()).toJson();
        return int(tree.count("\"app_id\":"));
    }

    /// Without the upper part, where the terminal and the mouse are.
    QImage photographOfPart() const
    {
        QImage picture = photograph().convertToFormat(QImage::Format_RGB32);
        for (int y = 0; y < 330; ++y)
            memset(picture.scanLine(y), 0, size_t(picture.bytesPerLine()));
        return picture;
    }

    /// The smallest rectangle outside of which the screen is as it was.
    QRect whatChanged(const QImage &before) const
    {
        const QImage now = photographOfPart();
        QRect changed;
        for (int y = 0; y < now.height(); ++y) {
            for (int x = 0; x < now.width(); ++x) {
                if (now.pixel(x, y) != before.pixel(x, y))
                    changed |= QRect(x, y, 1, 1);
            }
        }
        return changed;
    }
};

VELMORA_WIDGETS_TEST(TrayAsWaylandPanelTest)
#include "TrayAsWaylandPanelTest.moc"
