// SPDX-License-Identifier: MIT
#include "style/BezelButton.h"
#include "style/VelmoraPalette.h"
#include "tests/tray/TrayBesideTerminal.h"
#include "tests/world/FramePlaces.h"
#include "tests/world/TestProgram.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QToolTip>

using namespace Qt::StringLiterals;

using TrayOnScreen::button;
using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;
using TrayOnScreen::status;

namespace
{

/// What the whole screen shows.
QImage screenPicture(const TrayRig &rig)
{
    const QString file = rig.place(u"screen.png"_s).toLocalFile();
    XDesktop::run(u"maim"_s, {file});
    return QImage(file);
}

/// A bar along the bottom of the screen, for which window managers reserve space.
class DesktopBar : public QWidget
{
public:
    explicit DesktopBar(int height)
    {
        setWindowFlag(Qt::FramelessWindowHint);
        setAttribute(Qt::WA_ShowWithoutActivating);
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        setGeometry(0, screen.height() - height, screen.width(), height);
        createWinId();
        setAttribute(Qt::WA_X11NetWmWindowTypeDock);
        XDesktop::run(u"xprop"_s,
                      {u"-id"_s, QString::number(winId()), u"-f"_s, u"_NET_WM_STRUT"_s, u"32c"_s,
                       u"-set"_s, u"_NET_WM_STRUT"_s, u"0,0,0,%1"_s.arg(height)});
        show();
    }
};

} // namespace

class TrayOnDesktopTest : public QObject, TrayBesideTerminal
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void newScreenshotsLeaveTheKeyboardToTheOtherProgram()
    {
        XDesktop::type(u"before "_s);
        add("one.png");
        XDesktop::type(u"between "_s);
        add("two.png");
        m_tray->updateSuggestion(*m_lastAdded, u"better.png"_s, true);
        XDesktop::type(u"after\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), u"before between after\n"_s, patience);
        QVERIFY(m_terminal->isActive());
        QVERIFY(!panel()->isActiveWindow());
    }

    void aPanelThatIsShownAgainLeavesTheKeyboardToo()
    {
        add("one.png");
        XDesktop::click(centerOf(button(rows().first(), u"Dismiss"_s)));
        QTRY_VERIFY(!panel()->isVisible());
        m_terminal->activate();
        add("two.png");
        XDesktop::type(u"still here\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), u"still here\n"_s, patience);
    }

    void itIsAPanelEachTime()
    {
        for (int time = 0; time < 2; ++time) {
            add("one.png");
            const auto property = [](const char *name) {
                return XDesktop::property(panel()->winId(), QString::fromUtf8(name));
            };
            QTRY_COMPARE(property("_NET_WM_DESKTOP"), u"4294967295"_s);
            const QString state = property("_NET_WM_STATE");
            for (const char *atom : {"ABOVE", "SKIP_TASKBAR", "SKIP_PAGER"})
                QVERIFY2(state.contains(QString::fromUtf8(atom)), qPrintable(state));
            QTest::mouseClick(button(rows().first(), u"Dismiss"_s), Qt::LeftButton);
        }
    }

    void aClickIntoTheNameTakesTheKeyboardAndTheNameIsTyped()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(name(rows().first())));
        QTRY_VERIFY(name(rows().first())->hasFocus());
        XDesktop::pressKey(u"ctrl+a"_s);
        XDesktop::type(u"Quarterly report"_s);
        QTRY_COMPARE(name(rows().first())->text(), u"Quarterly report"_s);
        XDesktop::pressKey(u"Return"_s);
        QTRY_COMPARE(status(rows().first()), u"Saved as quarterly-report.png"_s);
        QVERIFY(QFile::exists(m_rig->place(u"quarterly-report.png"_s).toLocalFile()));
        QCOMPARE(typedIntoTerminal(), QString());
    }

    void turningToAnotherProgramCommitsTheName()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(name(rows().first())));
        QTRY_VERIFY(name(rows().first())->hasFocus());
        XDesktop::pressKey(u"ctrl+a"_s);
        XDesktop::type(u"other"_s);
        m_terminal->activate();
        QTRY_COMPARE(name(rows().first())->text(), u"other.png"_s);
        QVERIFY(panel()->isVisible());
    }

    void escapeClosesTheRow()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(name(rows().first())));
        QTRY_VERIFY(name(rows().first())->hasFocus());
        XDesktop::pressKey(u"Escape"_s);
        QTRY_VERIFY(rows().isEmpty());
        QVERIFY(!panel()->isVisible());
        QVERIFY(QFile::exists(m_rig->place(u"one.png"_s).toLocalFile()));
    }

    void aButtonNeedsNoKeyboardAndGivesItToNoName()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(button(rows().first(), u"Copy"_s)));
        QTRY_COMPARE(status(rows().first()), u"Copied"_s);
        XDesktop::type(u"xyz"_s);
        XDesktop::pressKey(u"ctrl+v"_s);
        QCoreApplication::processEvents();
        QVERIFY(!name(rows().first())->hasFocus());
        QCOMPARE(name(rows().first())->text(), u"one.png"_s);
    }

    void aButtonSaysWhatItDoesWhileAnotherProgramHasTheKeyboard()
    {
        add("one.png");
        settle();
        XDesktop::movePointer(centerOf(button(rows().first(), u"Show in File Manager"_s)));
        QTRY_COMPARE(QToolTip::text(), u"Show in File Manager"_s);
        QVERIFY(m_terminal->isActive());
    }

    void aClickOnAButtonDoesNotEndAnEdit()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(name(rows().first())));
        QTRY_VERIFY(name(rows().first())->hasFocus());
        XDesktop::pressKey(u"ctrl+a"_s);
        XDesktop::type(u"half"_s);
        QTRY_COMPARE(name(rows().first())->text(), u"half"_s);
        XDesktop::click(centerOf(button(rows().first(), u"Copy"_s)));
        QTRY_COMPARE(status(rows().first()), u"Copied"_s);
        QVERIFY(name(rows().first())->hasFocus());
        QCOMPARE(name(rows().first())->text(), u"half"_s);
    }

    void theTrayKeepsClearOfADesktopBarThatComesAndGoes()
    {
        add("one.png");
        const int screenBottom = QGuiApplication::primaryScreen()->geometry().bottom();
        QTRY_COMPARE(panel()->geometry().bottom(), screenBottom - 44);
        {
            const DesktopBar bar(60);
            QTRY_COMPARE_WITH_TIMEOUT(panel()->geometry().bottom(), screenBottom - 44 - 60,
                                      patience);
        }
        QTRY_COMPARE_WITH_TIMEOUT(panel()->geometry().bottom(), screenBottom - 44, patience);
    }

    void aGrowingPanelKeepsItsLowerEdgeAllTheWay()
    {
        add("one.png");
        settle();
        const int edge = panel()->geometry().bottom();
        FramePlaces places(panel()->winId());
        add("two.png");
        add("three.png");
        QTest::mouseClick(button(rows().first(), u"Dismiss"_s), Qt::LeftButton);
        const QSize wanted(620, 166);
        QTRY_VERIFY(places.read().size() >= 3 && places.read().last().size() == wanted);
        for (const QRect &place : places.read())
            QCOMPARE(place.bottom(), edge);
    }

    void withoutACompositorTheCornersAreCutOffTheWindow()
    {
        add("one.png");
        settle();
        const QImage screen = screenPicture(*m_rig);
        const QRect place = panel()->geometry();
        const QColor desktop = screen.pixelColor(place.topLeft() - QPoint(10, 10));
        for (const QPoint corner :
             {place.topLeft(), place.topRight(), place.bottomLeft(), place.bottomRight()})
            QCOMPARE(screen.pixelColor(corner), desktop);
        QCOMPARE(screen.pixelColor(place.left() + 300, place.top() + 4).rgb(),
                 VelmoraPalette::tray().rgb());
        // No pixel along the corner's curve is darker than the panel's edge.
        const int edge = screen.pixelColor(place.left() + 300, place.top()).lightness();
        for (int i = 0; i < 14; ++i) {
            const QColor color = screen.pixelColor(place.topLeft() + QPoint(i, i));
            QVERIFY(color == desktop || color.lightness() >= edge - 12);
        }
    }

private:
    void add(const char *file)
    {
        m_lastAdded = m_tray->addScreenshot(m_rig->open(m_rig->screenshot(QString::fromUtf8(file))),
                                            QString::fromUtf8(file));
        QVERIFY(QTest::qWaitForWindowExposed(panel()));
    }

    /// Waits until the newest row has reached its place.
    static void settle()
    {
        QTRY_COMPARE(rows().first()->x(), 8);
        QTRY_COMPARE(TrayOnScreen::picture(rows().first()).pixel(300, 4), qRgb(255, 255, 255));
    }

    std::optional<QUuid> m_lastAdded;
};

VELMORA_WIDGETS_TEST(TrayOnDesktopTest)
#include "TrayOnDesktopTest.moc"
