// SPDX-License-Identifier: MIT
#include "tests/tray/TrayOnSwayFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The tray as a panel of a wlroots desktop with several screens, with a bar, and with screens that
/// change.
class TrayOnWaylandScreensTest : public QObject, TrayOnSwayFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!Sway::isInstalled())
            QSKIP("sway or setpriv is not installed");
    }

    void init()
    {
        // For status icons, the bar would wait for the session bus, which may be another user's.
        begin(Sway::X11::No, screenSettings("HEADLESS") +
                                 "bar {\n id below\n mode invisible\n position bottom\n"
                                 " height 30\n tray_output none\n}\n");
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2)), patience);
    }

    void cleanup()
    {
        QCOMPARE(m_tray.state(), QProcess::Running);
        end();
    }

    void theNextScreenshotBringsItToTheScreenThatTheUserWorksOn()
    {
        addSecondScreen(u"HEADLESS"_s);
        m_sway->command(u"focus output HEADLESS-2"_s);
        QVERIFY(staysAt(trayPlace(2)));
        m_tray.write("there.png\n");
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(3, secondScreen)), patience);
        QVERIFY(staysAt(trayPlace(3, secondScreen)));
        QVERIFY(!isSeenAt(trayPlace(2)) && !isSeenAt(trayPlace(3)));
        m_sway->command(u"focus output HEADLESS-1"_s);
        m_tray.write("here.png\n");
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(3)), patience);
        QVERIFY(staysAt(trayPlace(3)));
        QVERIFY(!isSeenAt(trayPlace(3, secondScreen)));
        worksAt(trayPlace(3));
    }

    void whileItsMenuIsOpenItStaysWhereItIs()
    {
        addSecondScreen(u"HEADLESS"_s);
        const QImage before = photograph();
        m_pointer->rightClick(nameIn(trayPlace(2)));
        QTRY_VERIFY_WITH_TIMEOUT(photograph() != before, patience);
        m_sway->command(u"focus output HEADLESS-2"_s);
        m_tray.write("meanwhile.png\n");
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(3)), patience);
        QVERIFY(staysAt(trayPlace(3)));
        m_pointer->click({300, 300});
        worksAt(trayPlace(3));
    }

    void itMovesClearOfABarThatComesAndGoes()
    {
        const QRect aboveBar = trayPlace(2, {{0, 0}, screenSize - QSize(0, 30)});
        m_sway->command(u"bar below mode dock"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(aboveBar), patience);
        QVERIFY(staysAt(aboveBar));
        // One that is new beside a bar.
        restartTray();
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(aboveBar), patience);
        QVERIFY(staysAt(aboveBar));
        m_sway->command(u"bar below mode invisible"_s);
        worksAt(trayPlace(2));
    }

    void itIsSharpAfterItsScreenHasChangedItsScale()
    {
        m_sway->command(u"output HEADLESS-1 resolution 2560x1440"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2, {{0, 0}, screenSize * 2})), patience);
        m_sway->command(u"output HEADLESS-1 scale 2"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2), 2), patience);
        QVERIFY(Waiting::settles([&] { return trayAtDoubleScale(); }, 500ms));
        const QImage changed = trayAtDoubleScale();
        restartTray();
        QTRY_VERIFY_WITH_TIMEOUT(trayAtDoubleScale() == changed, patience);
    }

    void itKeepsItsCornerWhenItsScreenChanges_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QSize>("size");
        QTest::newRow("mode") << u"resolution 1920x1080"_s << QSize(1920, 1080);
        QTest::newRow("turned") << u"transform 90"_s << QSize(720, 1280);
    }

    void itKeepsItsCornerWhenItsScreenChanges()
    {
        QFETCH(QString, change);
        QFETCH(QSize, size);
        m_sway->command(u"output HEADLESS-1 "_s + change);
        setDesktopSize(size);
        worksAt(trayPlace(2, {{0, 0}, size}));
    }

private:
    QImage trayAtDoubleScale() const
    {
        const QRect place = trayPlace(2);
        return photograph().copy({place.topLeft() * 2, place.size() * 2});
    }
};

VELMORA_WIDGETS_TEST(TrayOnWaylandScreensTest)
#include "TrayOnWaylandScreensTest.moc"
