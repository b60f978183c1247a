// SPDX-License-Identifier: MIT
#include "style/lightAppearance.h"
#include "tests/app/welcome/WelcomeWindowParts.h"
#include "tests/world/Screens.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QWindow>

#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace WelcomeWindowParts;

namespace
{

QScrollBar *scrollBar(const WelcomeWindow &window)
{
    return window.findChild<QScrollArea *>()->verticalScrollBar();
}

/// With the window manager's frame. The widget's own value may date from before it had one.
QRect framed(const WelcomeWindow &window)
{
    return window.windowHandle()->frameGeometry();
}

bool isFramed(const WelcomeWindow &window)
{
    return framed(window).height() > window.height();
}

/// The windows from bottom to top.
QStringList stacking()
{
    const QString line = XDesktop::run(u"xprop"_s, {u"-root"_s, u"_NET_CLIENT_LIST_STACKING"_s});
    return line.section(u'#', 1).remove(u' ').split(u',');
}

QString name(const QWidget &window)
{
    return u"0x%1"_s.arg(window.winId(), 0, 16);
}

} // namespace

/// Runs on screens of several sizes.
class WelcomeWindowPlacementTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { applyLightAppearance(); }
    void init() { VelmoraSettings::open().clear(); }

    void itIsAsLargeAsItIsMeantToBe()
    {
        const int room = QGuiApplication::primaryScreen()->availableGeometry().height();
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QCOMPARE(window.windowTitle(), u"Velmora"_s);
        QCOMPARE(window.width(), 620);
        if (room >= 960)
            QCOMPARE(window.height(), 886);
        QTRY_VERIFY(isFramed(window));
        QVERIFY(window.screen()->availableGeometry().contains(framed(window)));
    }

    void itAppearsInTheMiddleOfTheScreen()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QTRY_VERIFY(isFramed(window));
        const QPoint off = framed(window).center() - window.screen()->availableGeometry().center();
        QVERIFY2(std::abs(off.x()) <= 2, qPrintable(QString::number(off.x())));
        QVERIFY2(std::abs(off.y()) <= 22, qPrintable(QString::number(off.y())));
    }

    void nothingScrollsWhereThereIsRoom()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QCOMPARE(scrollBar(window)->maximum() == 0, window.height() == 886);
    }

    void everyControlCanBeReachedAndIsThenInSight()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        for (QWidget *control : controls(window)) {
            XDesktop::pressKey(u"Tab"_s);
            QTRY_COMPARE(QApplication::focusWidget(), control);
            QCOMPARE(control->visibleRegion(), QRegion(control->rect()));
        }
    }

    void theFooterStaysInSight()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QWidget *done = button(window, u"Done"_s);
        const QRect before = place(*done);
        scrollBar(window)->setValue(scrollBar(window)->maximum());
        QCOMPARE(place(*done), before);
        QCOMPARE(done->visibleRegion(), QRegion(done->rect()));
        QWidget *hint = label(
            window, u"Picture is best for chats. File is best for uploads and attachments."_s);
        QCOMPARE(hint->visibleRegion(), QRegion(hint->rect()));
    }

    void nothingIsCutOff()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QCOMPARE(window.findChild<QScrollArea *>()->horizontalScrollBar()->maximum(), 0);
        for (const QLabel *each : window.findChildren<QLabel *>()) {
            const QString text = each->text();
            if (each->wordWrap())
                QVERIFY2(each->height() >= each->heightForWidth(each->width()),
                         qUtf8Printable(text));
            else if (!text.startsWith(u'/'))
                QVERIFY2(each->width() >= each->sizeHint().width(), qUtf8Printable(text));
        }
    }

    void closingHidesItAndEndsNothing()
    {
        QApplication::setQuitOnLastWindowClosed(true);
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QTRY_VERIFY(isFramed(window));
        const QSignalSpy quitting(qApp, &QCoreApplication::aboutToQuit);
        const QPoint where = framed(window).topLeft();
        const QString closed = name(window);
        QVERIFY(window.close());
        QVERIFY(!window.isVisible());
        QTRY_VERIFY(!stacking().contains(closed));
        QCOMPARE(quitting.count(), 0);
        QVERIFY(hasKeyboard(window));
        QTRY_VERIFY(isFramed(window));
        QTRY_COMPARE(framed(window).topLeft(), where);
    }

    void itComesBackWhereTheUserHadMovedIt()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QTRY_VERIFY(isFramed(window));
        XDesktop::run(u"xdotool"_s,
                      {u"windowmove"_s, QString::number(window.winId()), u"40"_s, u"8"_s});
        const QPoint moved(40, 8);
        QTRY_VERIFY((framed(window).topLeft() - moved).manhattanLength() < 30);
        const QPoint where = framed(window).topLeft();
        for (int i = 0; i < 3; ++i) {
            const QString closed = name(window);
            window.close();
            QTRY_VERIFY(!stacking().contains(closed));
            QVERIFY(hasKeyboard(window));
            QTRY_VERIFY(isFramed(window));
            QTRY_COMPARE(framed(window).topLeft(), where);
            const QString hidden = name(window);
            window.hide();
            QTRY_VERIFY(!stacking().contains(hidden));
            QVERIFY(hasKeyboard(window));
            QTRY_VERIFY(isFramed(window));
            QTRY_COMPARE(framed(window).topLeft(), where);
        }
    }

    void itsTitleBarAndButtonsStayInReachWhenTheScreenShrinks_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::newRow("shown") << false;
        QTest::newRow("hidden") << true;
    }

    void itsTitleBarAndButtonsStayInReachWhenTheScreenShrinks()
    {
        QFETCH(const bool, hidden);
        const Screens screens;
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QTRY_VERIFY(isFramed(window));
        const int before = window.height();
        XDesktop::run(u"xdotool"_s, {u"windowmove"_s, QString::number(window.winId()),
                                     QString::number(screens.whole().width() - 640), u"8"_s});
        QTRY_VERIFY(framed(window).left() > screens.whole().width() / 2 - 60);
        if (hidden)
            window.close();
        QVERIFY(screens.setSize({1024, 600}));
        window.present();
        const auto isInReach = [&] {
            return isFramed(window) &&
                   window.screen()->availableGeometry().contains(framed(window)) &&
                   button(window, u"Done"_s)->visibleRegion().boundingRect().height() > 20;
        };
        QTRY_VERIFY(isInReach());
        QVERIFY(!QTest::qWaitFor([&] { return !isInReach(); }, 500));
        QVERIFY(scrollBar(window)->maximum() > 0);
        QVERIFY(screens.setSize(screens.whole()));
        QTRY_COMPARE(window.height(), before);
        QTRY_VERIFY(isInReach());
        QVERIFY(!QTest::qWaitFor([&] { return !isInReach(); }, 500));
    }

    void itGivesWayToAPanelThatComesLate()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        const int before = window.height();
        constexpr int panelHeight = 200;
        QWidget panel;
        panel.setAttribute(Qt::WA_X11NetWmWindowTypeDock);
        panel.setGeometry(0, 0, window.screen()->size().width(), panelHeight);
        XDesktop::run(u"xprop"_s,
                      {u"-id"_s, QString::number(panel.winId()), u"-f"_s, u"_NET_WM_STRUT"_s,
                       u"32c"_s, u"-set"_s, u"_NET_WM_STRUT"_s, u"0,0,%1,0"_s.arg(panelHeight)});
        panel.show();
        QTRY_COMPARE(window.screen()->availableGeometry().top(), panelHeight);
        QTRY_VERIFY(window.height() < before);
        QVERIFY(framed(window).height() <= window.screen()->availableGeometry().height());
        panel.hide();
        QTRY_COMPARE(window.height(), before);
    }

    void itFloatsAboveOtherWindows()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QWidget other;
        other.resize(400, 400);
        other.show();
        other.raise();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QTRY_VERIFY(stacking().contains(name(other)));
        QVERIFY(stacking().indexOf(name(window)) > stacking().indexOf(name(other)));
    }

    void itCanBeMinimisedAndClosedButNotResized()
    {
        WelcomeWindow window(state());
        QVERIFY(hasKeyboard(window));
        QTRY_VERIFY(isFramed(window));
        const QString allowed = XDesktop::property(window.winId(), u"_NET_WM_ALLOWED_ACTIONS"_s);
        QVERIFY(allowed.contains(u"_NET_WM_ACTION_CLOSE"_s));
        QVERIFY(allowed.contains(u"_NET_WM_ACTION_MINIMIZE"_s));
        QVERIFY(!allowed.contains(u"_NET_WM_ACTION_RESIZE"_s));
        QVERIFY(!allowed.contains(u"_NET_WM_ACTION_MAXIMIZE"_s));
    }
};

VELMORA_WIDGETS_TEST(WelcomeWindowPlacementTest)
#include "WelcomeWindowPlacementTest.moc"
