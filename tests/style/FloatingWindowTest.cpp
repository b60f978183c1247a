// SPDX-License-Identifier: MIT
#include "style/FloatingWindow.h"

#include "tests/world/Screens.h"
#include "tests/world/TestProgram.h"

#include <QAccessible>
#include <QDialog>
#include <QPointer>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{

class SomeWindow : public FloatingWindow
{
public:
    SomeWindow() : FloatingWindow(u"Some Window"_s, Qt::WindowMinMaxButtonsHint)
    {
        resize(600, 400);
    }

protected:
    void fitInto(const QSize &room) override { resize(size().boundedTo(room)); }
};

/// With the window manager's frame.
QRect framed(const QWidget &window)
{
    return window.windowHandle()->frameGeometry();
}

bool isFramed(const QWidget &window)
{
    return framed(window).height() > window.height();
}

bool isWhollyOnAScreen(const QWidget &window)
{
    const auto screens = QGuiApplication::screens();
    return isFramed(window) &&
           std::any_of(screens.cbegin(), screens.cend(), [&window](const QScreen *screen) {
               return screen->availableGeometry().contains(framed(window));
           });
}

/// Soon, and for another half second.
bool comesAndStaysOnAScreen(const QWidget &window)
{
    return QTest::qWaitFor([&window] { return isWhollyOnAScreen(window); }) &&
           !QTest::qWaitFor([&window] { return !isWhollyOnAScreen(window); }, 500);
}

bool showFramed(FloatingWindow &window)
{
    window.present();
    return QTest::qWaitForWindowActive(&window) &&
           QTest::qWaitFor([&window] { return isFramed(window); });
}

/// As the user drags it.
bool moveTo(const QWidget &window, QPoint place)
{
    XDesktop::run(u"xdotool"_s, {u"windowmove"_s, QString::number(window.winId()),
                                 QString::number(place.x()), QString::number(place.y())});
    return QTest::qWaitFor(
        [&] { return (framed(window).topLeft() - place).manhattanLength() < 30; });
}

} // namespace

class FloatingWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsAFrameWithItsTitleForAssistiveTechnologies()
    {
        SomeWindow window;
        QVERIFY(showFramed(window));
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&window);
        QCOMPARE(accessible->role(), QAccessible::Window);
        QCOMPARE(accessible->text(QAccessible::Name), u"Some Window"_s);
    }

    void itComesIntoReachWhenTheScreenShrinks()
    {
        const Screens screens;
        SomeWindow window;
        QVERIFY(showFramed(window));
        QVERIFY(moveTo(window, {950, 550}));
        QVERIFY(isWhollyOnAScreen(window));
        QVERIFY(screens.setSize({1024, 700}));
        QVERIFY(comesAndStaysOnAScreen(window));
        QCOMPARE(window.size(), QSize(600, 400));
    }

    void itComesBackWithinReachWhenTheScreenHasShrunkMeanwhile()
    {
        const Screens screens;
        SomeWindow window;
        QVERIFY(showFramed(window));
        QVERIFY(moveTo(window, {950, 550}));
        window.close();
        QVERIFY(screens.setSize({1024, 700}));
        QVERIFY(showFramed(window));
        QVERIFY(comesAndStaysOnAScreen(window));
    }

    void itIsNoLargerThanTheScreen()
    {
        const Screens screens;
        SomeWindow window;
        window.resize(1200, 900);
        QVERIFY(showFramed(window));
        QVERIFY(screens.setSize({1024, 700}));
        QVERIFY(comesAndStaysOnAScreen(window));
        window.close();
        QVERIFY(screens.setSize({800, 600}));
        QVERIFY(showFramed(window));
        QVERIFY(comesAndStaysOnAScreen(window));
    }

    void aMonitorThatGoesTakesNoWindowWithIt_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::newRow("shown") << false;
        QTest::newRow("hidden") << true;
    }

    void aMonitorThatGoesTakesNoWindowWithIt()
    {
        QFETCH(const bool, hidden);
        const Screens screens;
        QVERIFY(screens.divide());
        SomeWindow window;
        QVERIFY(showFramed(window));
        QVERIFY(moveTo(window, {950, 550}));
        QVERIFY(isWhollyOnAScreen(window));
        if (hidden)
            window.close();
        QVERIFY(screens.joinMonitors());
        QVERIFY(screens.setSize({800, 700}));
        QVERIFY(showFramed(window));
        QVERIFY(comesAndStaysOnAScreen(window));
    }

    void itIsWhollyOnOneOfTwoMonitorsWhenItIsAskedFor()
    {
        const Screens screens;
        QVERIFY(screens.divide());
        SomeWindow window;
        QVERIFY(showFramed(window));
        QVERIFY(moveTo(window, {600, 300}));
        QVERIFY(!isWhollyOnAScreen(window));
        window.present();
        QVERIFY(comesAndStaysOnAScreen(window));
        QVERIFY(framed(window).left() >= 800);
    }

    void itComesIntoReachWhenItIsAskedFor_data()
    {
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<bool>("hidden");
        QTest::newRow("right") << QPoint(1400, 300) << false;
        QTest::newRow("bottom") << QPoint(300, 900) << false;
        QTest::newRow("right, hidden") << QPoint(1400, 300) << true;
        QTest::newRow("bottom, hidden") << QPoint(300, 900) << true;
    }

    void itComesIntoReachWhenItIsAskedFor()
    {
        QFETCH(const QPoint, place);
        QFETCH(const bool, hidden);
        SomeWindow window;
        QVERIFY(showFramed(window));
        QVERIFY(moveTo(window, place));
        QVERIFY(!isWhollyOnAScreen(window));
        if (hidden)
            window.close();
        QVERIFY(showFramed(window));
        QVERIFY(comesAndStaysOnAScreen(window));
    }

    void ctrlWClosesItAndEndsNothing()
    {
        SomeWindow window;
        QVERIFY(showFramed(window));
        QTRY_COMPARE(XDesktop::activeWindow(), window.winId());
        const QSignalSpy quitting(qApp, &QCoreApplication::aboutToQuit);
        XDesktop::pressKey(u"ctrl+w"_s);
        QTRY_VERIFY(!window.isVisible());
        QCOMPARE(quitting.count(), 0);
    }

    void itsDialogIsInFrontOfIt()
    {
        SomeWindow window;
        QVERIFY(showFramed(window));
        QDialog dialog(&window);
        dialog.open();
        QTRY_COMPARE(XDesktop::activeWindow(), dialog.winId());
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_COMPARE(XDesktop::activeWindow(), other.winId());
        window.present();
        QTRY_COMPARE(XDesktop::activeWindow(), dialog.winId());
        QVERIFY(!QTest::qWaitFor([&dialog] { return XDesktop::activeWindow() != dialog.winId(); },
                                 500));
    }

    void itsDialogsEndWithIt()
    {
        SomeWindow window;
        QVERIFY(showFramed(window));
        const QPointer<QDialog> dialog = new QDialog(&window);
        const QSignalSpy finished(dialog.data(), &QDialog::finished);
        dialog->open();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        window.hide();
        QVERIFY(!dialog->isVisible());
        QTRY_VERIFY(!dialog);
        QCOMPARE(finished.count(), 0);
    }
};

VELMORA_WIDGETS_TEST(FloatingWindowTest)
#include "FloatingWindowTest.moc"
