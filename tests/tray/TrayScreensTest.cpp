// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"
#include "tests/world/Screens.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"

#include "core/VelmoraSettings.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QTest>

using namespace Qt::StringLiterals;
using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;

namespace
{

/// A desktop's bar, at an edge that it keeps for itself.
class Bar : public QWidget
{
public:
    /// @param reserved the property that tells the window manager
    Bar(const QRect &place, const QString &reserved) : QWidget(nullptr, Qt::FramelessWindowHint)
    {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_X11NetWmWindowTypeDock);
        setGeometry(place);
        const QString property = u"_NET_WM_STRUT_PARTIAL"_s;
        XDesktop::run(u"xprop"_s, {u"-id"_s, QString::number(winId()), u"-f"_s, property, u"32c"_s,
                                   u"-set"_s, property, reserved});
        show();
        [[maybe_unused]] const bool isShown = QTest::qWaitForWindowExposed(this);
    }
};

} // namespace

/// The tray on a desktop with two screens side by side, each 800 by 1000.
class TrayScreensTest : public QObject, ControllerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_screens.divide());
        XDesktop::movePointer(onTheLeft);
        begin();
    }

    void cleanup()
    {
        end();
        QVERIFY(m_screens.joinMonitors());
    }

    void itStandsOnTheScreenThatHasThePointer()
    {
        add("one.png");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 1000 - 88 - 44, 620, 88));
        XDesktop::movePointer(onTheRight);
        add("two.png");
        QTRY_COMPARE(panel()->geometry(), QRect(1600 - 620 - 44, 1000 - 166 - 44, 620, 166));
        XDesktop::movePointer(onTheLeft);
        add("three.png");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 1000 - 244 - 44, 620, 244));
    }

    void itKeepsClearOfTheBarsOfItsScreen()
    {
        const Bar below({0, 940, 800, 60}, u"0,0,0,60,0,0,0,0,0,0,0,799"_s);
        const Bar atTheSide({1520, 0, 80, 1000}, u"0,80,0,0,0,0,0,999,0,0,0,0"_s);
        // Its icons grow under the mouse, so that its window is larger than what it reserves.
        const Bar above({800, 0, 720, 90}, u"0,0,30,0,0,0,0,0,800,1519,0,0"_s);
        add("one.png");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 940 - 88 - 44, 620, 88));
        XDesktop::movePointer(onTheRight);
        add("two.png");
        QTRY_COMPARE(panel()->geometry(), QRect(1520 - 620 - 44, 1000 - 166 - 44, 620, 166));
        VelmoraSettings::setTrayPosition(TrayPosition::topRight);
        m_tray->layoutPanel();
        QTRY_COMPARE(panel()->geometry(), QRect(1520 - 620 - 44, 30 + 44, 620, 166));
    }

    void withoutANewScreenshotItStaysOnItsScreen()
    {
        add("one.png");
        add("two.png");
        XDesktop::movePointer(onTheRight);
        click(rows().first(), "Dismiss");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 1000 - 88 - 44, 620, 88));
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        m_tray->layoutPanel();
        QTRY_COMPARE(panel()->geometry(), QRect(44, 44, 620, 88));
    }

    void whileANameIsTypedItStaysWhereItIs()
    {
        add("one.png");
        QVERIFY(QTest::qWaitForWindowExposed(panel()));
        type(rows().first(), "half");
        XDesktop::movePointer(onTheRight);
        add("two.png");
        QTRY_COMPARE(panel()->geometry(), QRect(800 - 620 - 44, 1000 - 166 - 44, 620, 166));
        QVERIFY(name(rows().last())->hasFocus());
    }

    void whenItsScreenGoesItMovesToAnother()
    {
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        XDesktop::movePointer(onTheRight);
        add("one.png");
        QTRY_COMPARE(panel()->pos(), QPoint(800 + 44, 44));
        QVERIFY(m_screens.joinMonitors());
        QTRY_COMPARE(panel()->pos(), QPoint(44, 44));
    }

private:
    static constexpr QPoint onTheLeft = {300, 300};
    static constexpr QPoint onTheRight = {1300, 300};

    Screens m_screens;
};

VELMORA_WIDGETS_TEST(TrayScreensTest)
#include "TrayScreensTest.moc"
