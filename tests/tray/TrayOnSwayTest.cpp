// SPDX-License-Identifier: MIT
#include "tests/tray/TrayOnSwayFixture.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The tray on a wlroots desktop, where its windows belong to an X server inside the compositor.
class TrayOnSwayTest : public QObject, TrayOnSwayFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!Sway::isInstalled())
            QSKIP("sway or setpriv is not installed");
        begin(Sway::X11::Yes);
    }

    void cleanupTestCase() { end(); }

    void itStandsInItsCornerAndLeavesTheKeyboard()
    {
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(1)) || isSeenAt(trayPlace(2)), patience);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2)), patience);
        typeLineAfter([] {}, u"hello"_s);
        QTRY_COMPARE_WITH_TIMEOUT(typed(), u"hello"_s, patience);
        QVERIFY(isSeenAt(trayPlace(2)));
    }

    void aClickOnAButtonLeavesTheKeyboard()
    {
        typeLineAfter([&] { m_pointer->click(copyButtonIn(trayPlace(2))); }, u"after a button"_s);
        QTRY_VERIFY_WITH_TIMEOUT(typed().endsWith(u"after a button"_s), patience);
    }

    void aClickIntoANameTakesTheKeyboardUntilAClickElsewhere()
    {
        m_pointer->click(nameIn(trayPlace(2)));
        QTRY_VERIFY_WITH_TIMEOUT(!terminalHasKeyboard(), patience);
        typeLineAfter([] {}, u" fresh"_s);
        QTRY_VERIFY_WITH_TIMEOUT(hasPrinted("fresh"), patience);
        QVERIFY(isSeenAt(trayPlace(2)));

        m_pointer->click({300, 300});
        QTRY_VERIFY_WITH_TIMEOUT(terminalHasKeyboard(), patience);
        typeLineAfter([] {}, u"after a name"_s);
        QTRY_VERIFY_WITH_TIMEOUT(typed().endsWith(u"after a name"_s), patience);
        QVERIFY(!typed().contains(u"fresh"_s));
        QVERIFY(isSeenAt(trayPlace(2)));
    }

    void underAFullScreenWindowItHasTheKeyboardWhileTheMouseIsThere()
    {
        m_sway->command(u"fullscreen enable"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeenAt(trayPlace(2)), patience);
        const auto isRenamed = [&] {
            // Otherwise the second round's click would be into a name that has the keyboard.
            m_pointer->moveTo({300, 300});
            typeLineAfter([&] { m_pointer->click(nameIn(trayPlace(2))); }, u" other"_s);
            return QTest::qWaitFor([&] { return hasPrinted("other"); }, 1000);
        };
        QVERIFY(QTest::qWaitFor(isRenamed, patience));
        typeLineAfter([&] { m_pointer->moveTo({300, 300}); }, u"after the tray"_s);
        QTRY_VERIFY_WITH_TIMEOUT(typed().endsWith(u"after the tray"_s), patience);
        QVERIFY(isSeenAt(trayPlace(2)));
    }
};

VELMORA_WIDGETS_TEST(TrayOnSwayTest)
#include "TrayOnSwayTest.moc"
