// SPDX-License-Identifier: MIT
#include "core/VelmoraSettings.h"
#include "style/BezelButton.h"
#include "style/VelmoraPalette.h"
#include "tests/tray/TrayRig.h"
#include "tests/world/FramePlaces.h"
#include "tests/world/TestProgram.h"
#include "tests/world/XDesktop.h"
#include "tray/FilenameTextField.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"
#include "tray/TrayController.h"

#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QToolTip>

using TrayOnScreen::button;
using TrayOnScreen::name;
using TrayOnScreen::panel;
using TrayOnScreen::rows;
using TrayOnScreen::status;

namespace
{

constexpr int patience = 20000;

QString text(const char *literal)
{
    return QString::fromUtf8(literal);
}

QPoint centerOf(const QWidget *widget)
{
    return widget->mapToGlobal(widget->rect().center());
}

/// What the whole screen shows.
QImage screenPicture(const TrayRig &rig)
{
    const QString file = rig.place(text("screen.png")).toLocalFile();
    XDesktop::run(text("maim"), {file});
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
        XDesktop::run(text("xprop"), {text("-id"), QString::number(winId()), text("-f"),
                                      text("_NET_WM_STRUT"), text("32c"), text("-set"),
                                      text("_NET_WM_STRUT"), text("0,0,0,%1").arg(height)});
        show();
    }
};

} // namespace

class TrayOnDesktopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        VelmoraSettings::open().clear();
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        XDesktop::movePointer({300, 700});
        m_rig = std::make_unique<TrayRig>();
        m_tray = std::make_unique<TrayController>(*m_rig->platform.panelWindow, m_rig->images,
                                                  m_rig->actions);
        m_terminal = std::make_unique<Terminal>(m_rig->place(text("typed")).toLocalFile());
    }

    void cleanup()
    {
        m_tray.reset();
        m_terminal.reset();
    }

    void newScreenshotsLeaveTheKeyboardToTheOtherProgram()
    {
        XDesktop::type(text("before "));
        add("one.png");
        XDesktop::type(text("between "));
        add("two.png");
        m_tray->updateSuggestion(*m_lastAdded, text("better.png"), true);
        XDesktop::type(text("after\n"));
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), text("before between after\n"), patience);
        QVERIFY(m_terminal->isActive());
        QVERIFY(!panel()->isActiveWindow());
    }

    void aPanelThatIsShownAgainLeavesTheKeyboardToo()
    {
        add("one.png");
        XDesktop::click(centerOf(button(rows().first(), text("Dismiss"))));
        QTRY_VERIFY(!panel()->isVisible());
        m_terminal->activate();
        add("two.png");
        XDesktop::type(text("still here\n"));
        QTRY_COMPARE_WITH_TIMEOUT(typedIntoTerminal(), text("still here\n"), patience);
    }

    void itIsAPanelEachTime()
    {
        for (int time = 0; time < 2; ++time) {
            add("one.png");
            const auto property = [](const char *name) {
                return XDesktop::property(panel()->winId(), text(name));
            };
            QTRY_COMPARE(property("_NET_WM_DESKTOP"), text("4294967295"));
            const QString state = property("_NET_WM_STATE");
            for (const char *atom : {"ABOVE", "SKIP_TASKBAR", "SKIP_PAGER"})
                QVERIFY2(state.contains(text(atom)), qPrintable(state));
            QTest::mouseClick(button(rows().first(), text("Dismiss")), Qt::LeftButton);
        }
    }

    void aClickIntoTheNameTakesTheKeyboardAndTheNameIsTyped()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(name(rows().first())));
        QTRY_VERIFY(name(rows().first())->hasFocus());
        XDesktop::pressKey(text("ctrl+a"));
        XDesktop::type(text("Quarterly report"));
        QTRY_COMPARE(name(rows().first())->text(), text("Quarterly report"));
        XDesktop::pressKey(text("Return"));
        QTRY_COMPARE(status(rows().first()), text("Saved as quarterly-report.png"));
        QVERIFY(QFile::exists(m_rig->place(text("quarterly-report.png")).toLocalFile()));
        QCOMPARE(typedIntoTerminal(), QString());
    }

    void turningToAnotherProgramCommitsTheName()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(name(rows().first())));
        QTRY_VERIFY(name(rows().first())->hasFocus());
        XDesktop::pressKey(text("ctrl+a"));
        XDesktop::type(text("other"));
        m_terminal->activate();
        QTRY_COMPARE(name(rows().first())->text(), text("other.png"));
        QVERIFY(panel()->isVisible());
    }

    void escapeClosesTheRow()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(name(rows().first())));
        QTRY_VERIFY(name(rows().first())->hasFocus());
        XDesktop::pressKey(text("Escape"));
        QTRY_VERIFY(rows().isEmpty());
        QVERIFY(!panel()->isVisible());
        QVERIFY(QFile::exists(m_rig->place(text("one.png")).toLocalFile()));
    }

    void aButtonNeedsNoKeyboardAndGivesItToNoName()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(button(rows().first(), text("Copy"))));
        QTRY_COMPARE(status(rows().first()), text("Copied"));
        XDesktop::type(text("xyz"));
        XDesktop::pressKey(text("ctrl+v"));
        QCoreApplication::processEvents();
        QVERIFY(!name(rows().first())->hasFocus());
        QCOMPARE(name(rows().first())->text(), text("one.png"));
    }

    void aButtonSaysWhatItDoesWhileAnotherProgramHasTheKeyboard()
    {
        add("one.png");
        settle();
        XDesktop::movePointer(centerOf(button(rows().first(), text("Show in File Manager"))));
        QTRY_COMPARE(QToolTip::text(), text("Show in File Manager"));
        QVERIFY(m_terminal->isActive());
    }

    void aClickOnAButtonDoesNotEndAnEdit()
    {
        add("one.png");
        settle();
        XDesktop::click(centerOf(name(rows().first())));
        QTRY_VERIFY(name(rows().first())->hasFocus());
        XDesktop::pressKey(text("ctrl+a"));
        XDesktop::type(text("half"));
        QTRY_COMPARE(name(rows().first())->text(), text("half"));
        XDesktop::click(centerOf(button(rows().first(), text("Copy"))));
        QTRY_COMPARE(status(rows().first()), text("Copied"));
        QVERIFY(name(rows().first())->hasFocus());
        QCOMPARE(name(rows().first())->text(), text("half"));
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
        QTest::mouseClick(button(rows().first(), text("Dismiss")), Qt::LeftButton);
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
        m_lastAdded = m_tray->addScreenshot(m_rig->open(m_rig->screenshot(text(file))), text(file));
        QVERIFY(QTest::qWaitForWindowExposed(panel()));
    }

    /// Waits until the newest row has reached its place.
    static void settle()
    {
        QTRY_COMPARE(rows().first()->x(), 8);
        QTRY_COMPARE(TrayOnScreen::picture(rows().first()).pixel(300, 4), qRgb(255, 255, 255));
    }

    QString typedIntoTerminal() const
    {
        QFile file(m_rig->place(text("typed")).toLocalFile());
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    std::unique_ptr<TrayRig> m_rig;
    std::unique_ptr<TrayController> m_tray;
    std::unique_ptr<Terminal> m_terminal;
    std::optional<QUuid> m_lastAdded;
};

VELMORA_WIDGETS_TEST(TrayOnDesktopTest)
#include "TrayOnDesktopTest.moc"
