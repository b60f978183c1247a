// SPDX-License-Identifier: MIT
#include "style/BezelButton.h"
#include "tests/tray/TrayAmongWindowsFixture.h"
#include "tests/world/Screens.h"
#include "tests/world/TestProgram.h"
#include "tests/world/WindowManager.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;
using TrayOnScreen::button;
using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;

/// The tray over a window that fills the screen. All of this must hold under every window manager;
/// this program is run under several.
class TrayOverFullScreenTest : public QObject, TrayAmongWindowsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void itIsSeenOverTheFullScreenWindowThatTheUserWorksIn()
    {
        WindowManager::setFullScreen(m_terminal->window(), true);
        QTRY_COMPARE_WITH_TIMEOUT(screenColor({1500, 100}), QColor(Qt::white), patience);
        m_terminal->activate();
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        XDesktop::type(u"still "_s);
        add(u"two.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QVERIFY(stays([this] { return isSeen(); }));
        XDesktop::type(u"here\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), u"still here\n"_s, patience);
    }

    void aWindowWithoutAFrameThatCoversTheScreenCountsAsFullScreen()
    {
        QWidget other(nullptr, Qt::FramelessWindowHint);
        other.setPalette(Qt::black);
        other.setGeometry(QGuiApplication::primaryScreen()->geometry());
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other, patience));
        QTRY_COMPARE_WITH_TIMEOUT(screenColor({1500, 100}), QColor(Qt::black), patience);
        for (const QString &file : {u"one.png"_s, u"two.png"_s}) {
            add(file);
            QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
            QVERIFY(stays([&] { return isSeen() && other.isActiveWindow(); }));
        }
    }

    void itIsSeenOverAFullScreenWindowWhileNothingIsActive()
    {
        m_terminal.reset();
        QWidget other(nullptr, Qt::FramelessWindowHint);
        other.setAttribute(Qt::WA_ShowWithoutActivating);
        other.setPalette(Qt::black);
        other.setGeometry(QGuiApplication::primaryScreen()->geometry());
        other.show();
        QTRY_COMPARE_WITH_TIMEOUT(screenColor({1500, 100}), QColor(Qt::black), patience);
        for (const QString &file : {u"one.png"_s, u"two.png"_s}) {
            add(file);
            QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
            QVERIFY(stays([this] { return isSeen(); }));
        }
    }

    void aTrayThatAFullScreenWindowHasCoveredIsThereAgainWithTheNextScreenshot()
    {
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        WindowManager::setFullScreen(m_terminal->window(), true);
        QTRY_COMPARE_WITH_TIMEOUT(screenColor({1500, 100}), QColor(Qt::white), patience);
        m_terminal->activate();
        add(u"two.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QVERIFY(m_terminal->isActive());

        WindowManager::setFullScreen(m_terminal->window(), false);
        QTRY_VERIFY_WITH_TIMEOUT(screenColor({1500, 100}) != QColor(Qt::white), patience);
        add(u"three.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QCOMPARE(rows().size(), 3);
        QTRY_VERIFY_WITH_TIMEOUT(XDesktop::property(panel()->winId(), u"_NET_WM_STATE"_s)
                                     .contains(u"_NET_WM_STATE_ABOVE"_s),
                                 patience);
        QVERIFY(m_terminal->isActive());
    }

    void itComesAndGoesOverAFullScreenWindowHoweverSlowTheManagerIs()
    {
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        WindowManager::setFullScreen(m_terminal->window(), true);
        QTRY_COMPARE_WITH_TIMEOUT(screenColor({1500, 100}), QColor(Qt::white), patience);
        m_terminal->activate();
        {
            const WindowManager::Standstill standstill;
            add(u"two.png"_s);
        }
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QVERIFY(stays([this] { return isSeen() && m_terminal->isActive(); }));

        WindowManager::setFullScreen(m_terminal->window(), false);
        QTRY_VERIFY_WITH_TIMEOUT(screenColor({1500, 100}) != QColor(Qt::white), patience);
        {
            const WindowManager::Standstill standstill;
            for (const QString &file : {u"three.png"_s, u"four.png"_s, u"five.png"_s})
                add(file);
        }
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QVERIFY(stays([this] { return isSeen() && m_terminal->isActive(); }));
    }

    void aFullScreenWindowOnAnotherScreenDoesNotCount()
    {
        const Screens screens;
        QVERIFY(screens.divide());
        WindowManager::setFullScreen(m_terminal->window(), true);
        QTRY_COMPARE_WITH_TIMEOUT(screenColor({700, 900}), QColor(Qt::white), patience);
        if (screenColor({1500, 900}) == QColor(Qt::white))
            QSKIP("this window manager takes both screens for one");
        m_terminal->activate();
        XDesktop::movePointer({1200, 500});
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        QVERIFY(panel()->x() >= 800);
        const auto isManaged = [] {
            return XDesktop::property(panel()->winId(), u"WM_STATE"_s).contains(u"Normal"_s);
        };
        QTRY_VERIFY_WITH_TIMEOUT(isManaged(), patience);
        QVERIFY(stays([&] { return isManaged() && isSeen() && m_terminal->hasKeyboard(); }));
    }

    void overAFullScreenWindowANameCanBeTypedAndTheKeyboardGoesBack()
    {
        WindowManager::setFullScreen(m_terminal->window(), true);
        QTRY_COMPARE_WITH_TIMEOUT(screenColor({1500, 100}), QColor(Qt::white), patience);
        m_terminal->activate();
        add(u"one.png"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(), patience);
        typeIntoName(u"Quarterly report"_s);
        QVERIFY(stays([] { return name(rows().first())->hasFocus(); }));
        XDesktop::type(u"s"_s);
        QTRY_COMPARE_WITH_TIMEOUT(name(rows().first())->text(), u"Quarterly reports"_s, patience);
        XDesktop::click(centerOf(button(rows().first(), u"Dismiss"_s)));
        QTRY_VERIFY_WITH_TIMEOUT(!panel()->isVisible(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_terminal->hasKeyboard(), patience);
        XDesktop::type(u"back\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), u"back\n"_s, patience);
    }
};

VELMORA_WIDGETS_TEST(TrayOverFullScreenTest)
#include "TrayOverFullScreenTest.moc"
