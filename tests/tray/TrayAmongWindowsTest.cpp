// SPDX-License-Identifier: MIT
#include "style/BezelButton.h"
#include "tests/tray/TrayAmongWindowsFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/WindowManager.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QDialog>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using TrayOnScreen::button;
using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;
using TrayOnScreen::status;

namespace
{

using PutAway = std::function<void(WId)>;

} // namespace

/// The tray among the windows of other programs. All of this must hold under every window manager;
/// this program is run under several.
class TrayAmongWindowsTest : public QObject, TrayAmongWindowsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void everyScreenshotLeavesTheKeyboardToTheOtherProgram()
    {
        XDesktop::type(u"before "_s);
        for (const QString &file : {u"one.png"_s, u"two.png"_s, u"three.png"_s, u"four.png"_s}) {
            add(file);
            XDesktop::type(file + u' ');
            QVERIFY(stays([this] { return m_terminal->isActive(); }));
            XDesktop::type(u"later "_s);
        }
        XDesktop::type(u"\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(
            typedIntoTerminal(),
            u"before one.png later two.png later three.png later four.png later \n"_s, patience);
        QVERIFY(!panel()->isActiveWindow());
    }

    void aTrayBehindAnotherWindowThatStaysAboveIsBroughtToTheFront()
    {
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QWidget other(nullptr, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        other.setAttribute(Qt::WA_ShowWithoutActivating);
        other.setGeometry(panel()->geometry().adjusted(-50, -300, 20, 20));
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        other.raise();
        QTRY_VERIFY_WITH_TIMEOUT(!isSeen(), patience);
        add(u"two.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QVERIFY(stays([this] { return isSeen() && m_terminal->isActive(); }));
    }

    void aClickOnAButtonOrBesideItLeavesTheKeyboardToTheOtherProgram_data()
    {
        QTest::addColumn<bool>("isOnButton");
        QTest::newRow("on a button") << true;
        QTest::newRow("beside it") << false;
    }

    void aClickOnAButtonOrBesideItLeavesTheKeyboardToTheOtherProgram()
    {
        QFETCH(const bool, isOnButton);
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QWidget *row = rows().first();
        XDesktop::click(isOnButton ? centerOf(button(row, u"Copy"_s))
                                   : row->mapToGlobal(QPoint(92, 4)));
        if (isOnButton)
            QTRY_COMPARE_WITH_TIMEOUT(status(row), u"Copied"_s, patience);
        XDesktop::type(u"still "_s);
        QVERIFY(stays([this] { return m_terminal->isActive(); }));
        XDesktop::type(u"here\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), u"still here\n"_s, patience);
        QVERIFY(!panel()->isActiveWindow());
    }

    void aClickIntoTheNameTakesTheKeyboardUntilAnotherProgramIsClicked()
    {
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        typeIntoName(u"Quarterly report"_s);
        QVERIFY(stays([] { return name(rows().first())->hasFocus(); }));
        XDesktop::type(u"s"_s);
        QTRY_COMPARE_WITH_TIMEOUT(name(rows().first())->text(), u"Quarterly reports"_s, patience);
        XDesktop::click(placeInTerminal);
        QTRY_VERIFY_WITH_TIMEOUT(!name(rows().first())->hasFocus(), patience);
        XDesktop::type(u"back\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), u"back\n"_s, patience);
    }

    void theKeyboardGoesBackWithTheRowWhoseNameHadItAlthoughOthersStay_data()
    {
        QTest::addColumn<bool>("isPushedOut");
        QTest::newRow("closed by Escape") << false;
        QTest::newRow("pushed out by newer ones") << true;
    }

    void theKeyboardGoesBackWithTheRowWhoseNameHadItAlthoughOthersStay()
    {
        QFETCH(const bool, isPushedOut);
        add(u"one.png"_s);
        if (!isPushedOut)
            add(u"two.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        typeIntoName(u"Report"_s);
        if (isPushedOut) {
            for (const QString &file : {u"two.png"_s, u"three.png"_s, u"four.png"_s})
                add(file);
        } else {
            XDesktop::pressKey(u"Escape"_s);
        }
        QTRY_VERIFY_WITH_TIMEOUT(m_terminal->isActive() && m_terminal->hasKeyboard(), patience);
        QVERIFY(stays([this] { return m_terminal->hasKeyboard() && isSeen(); }));
        XDesktop::type(u"back\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), u"back\n"_s, patience);
    }

    void aScreenshotWhileANameIsTypedDoesNotDisturbIt()
    {
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        typeIntoName(u"half"_s);
        add(u"two.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        XDesktop::type(u" and half"_s);
        QTRY_COMPARE_WITH_TIMEOUT(name(rows().last())->text(), u"half and half"_s, patience);
        QVERIFY(name(rows().last())->hasFocus());
    }

    void whenTheRowThatHadTheKeyboardGoesAnotherProgramGetsIt()
    {
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        typeIntoName(u"half"_s);
        XDesktop::click(centerOf(button(rows().first(), u"Dismiss"_s)));
        QTRY_VERIFY_WITH_TIMEOUT(!panel()->isVisible(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_terminal->isActive(), patience);
        XDesktop::type(u"back\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), u"back\n"_s, patience);
    }

    /// Some window managers would give it to the window that waits for the dialog.
    void theKeyboardGoesBackToADialogOfTheSameProgram()
    {
        QWidget window;
        window.setGeometry(500, 100, 400, 300);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, patience));
        XDesktop::click(window.geometry().center());
        QVERIFY(QTest::qWaitForWindowActive(&window, patience));
        QDialog dialog(&window);
        dialog.setGeometry(550, 150, 200, 100);
        dialog.open();
        QVERIFY(QTest::qWaitForWindowActive(&dialog, patience));
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        typeIntoName(u"Report"_s);
        XDesktop::pressKey(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!panel()->isVisible(), patience);
        const auto hasKeyboard = [&dialog] {
            return dialog.isActiveWindow() && XDesktop::activeWindow() == dialog.winId();
        };
        QTRY_VERIFY_WITH_TIMEOUT(hasKeyboard(), patience);
        QVERIFY(stays(hasKeyboard));
        XDesktop::pressKey(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!dialog.isVisible(), patience);
    }

    void aTrayThatTheUserPutAwayIsThereAgainWithTheNextScreenshot_data()
    {
        QTest::addColumn<PutAway>("putAway");
        QTest::newRow("minimised") << PutAway([](WId window) {
            XDesktop::run(u"xdotool"_s, {u"windowminimize"_s, QString::number(window)});
        });
        QTest::newRow("on another workspace") << PutAway([](WId window) {
            // Some window managers begin with one.
            XDesktop::run(u"xdotool"_s, {u"set_num_desktops"_s, u"2"_s});
            WindowManager::sendToWorkspace(window, 1);
        });
    }

    void aTrayThatTheUserPutAwayIsThereAgainWithTheNextScreenshot()
    {
        QFETCH(const PutAway, putAway);
        for (const QString &file : {u"one.png"_s, u"two.png"_s, u"three.png"_s}) {
            add(file);
            QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
            QVERIFY(stays([this] { return isSeen() && m_terminal->isActive(); }));
            putAway(panel()->winId());
            const bool isPutAway = QTest::qWaitFor([this] { return !isSeen(); }, patience);
            if (!isPutAway && !mayBeMinimised() &&
                qstrcmp(QTest::currentDataTag(), "minimised") == 0)
                QSKIP("this window manager does not minimise the tray");
            QVERIFY(isPutAway);
        }
    }

    void aTrayHiddenByShowDesktopIsThereAgainWithTheNextScreenshot()
    {
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        WindowManager::showDesktop(true);
        QTRY_VERIFY_WITH_TIMEOUT(
            XDesktop::run(u"xprop"_s, {u"-root"_s, u"_NET_SHOWING_DESKTOP"_s}).endsWith(u"= 1"_s),
            patience);
        add(u"two.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QVERIFY(stays([this] { return isSeen() && !panel()->isActiveWindow(); }));
        WindowManager::showDesktop(false);
        add(u"three.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
    }

    void itComesAgainWhenTheManagerHasNotSeenItGoYet()
    {
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        {
            const WindowManager::Standstill standstill;
            // The server holds back mouse clicks for the window manager.
            QTest::mouseClick(button(rows().first(), u"Dismiss"_s), Qt::LeftButton);
            QVERIFY(!panel()->isVisible());
            add(u"two.png"_s);
        }
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(XDesktop::property(panel()->winId(), u"_NET_WM_STATE"_s)
                                     .contains(u"_NET_WM_STATE_ABOVE"_s),
                                 patience);
        QVERIFY(stays([this] { return isSeen() && m_terminal->isActive(); }));
        QCOMPARE(XDesktop::property(panel()->winId(), u"_NET_WM_DESKTOP"_s), u"4294967295"_s);
    }

private:
    static bool mayBeMinimised()
    {
        return XDesktop::property(panel()->winId(), u"_NET_WM_ALLOWED_ACTIONS"_s)
            .contains(u"_NET_WM_ACTION_MINIMIZE"_s);
    }

    static constexpr QPoint placeInTerminal = {60, 60};
};

VELMORA_WIDGETS_TEST(TrayAmongWindowsTest)
#include "TrayAmongWindowsTest.moc"
