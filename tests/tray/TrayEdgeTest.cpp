// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/WindowManager.h"
#include "tests/world/XDesktop.h"

#include "style/VelmoraPalette.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/ScreenshotRowView.h"

#include <QGuiApplication>
#include <QImage>
#include <QMouseEvent>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;
using TrayOnScreen::panel;
using TrayOnScreen::rows;

namespace
{

constexpr int patience = 20000;
constexpr int aWhile = 500;

/// A white window behind everything else that records clicks.
class Backdrop : public QWidget
{
public:
    Backdrop() : QWidget(nullptr, Qt::FramelessWindowHint | Qt::WindowStaysOnBottomHint)
    {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setPalette(Qt::white);
        // At the full size of the screen it would count as a full-screen window.
        setGeometry(QGuiApplication::primaryScreen()->geometry().adjusted(0, 1, 0, 0));
        show();
    }

    QList<QPoint> clicks;

protected:
    void mousePressEvent(QMouseEvent *event) override
    {
        clicks.append(event->globalPosition().toPoint());
    }
};

} // namespace

/// What sets the tray off from what is behind it: its corners, its border and its shadow.
class TrayEdgeTest : public QObject, ControllerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        XDesktop::movePointer({300, 700});
        begin();
        m_backdrop = std::make_unique<Backdrop>();
        QVERIFY(QTest::qWaitForWindowExposed(m_backdrop.get()));
        QTRY_COMPARE_WITH_TIMEOUT(screenPicture().pixelColor(800, 500), white, patience);
    }

    void cleanup()
    {
        end();
        m_backdrop.reset();
    }

    void withACompositorASoftShadowLiesAroundIt()
    {
        const Compositor compositor;
        add("one.png");
        QTRY_VERIFY_WITH_TIMEOUT(hasShadow(screenPicture(), panel()->geometry()), patience);
        QCOMPARE(panel()->geometry(), trayPlace(1));

        const QImage screen = screenPicture();
        const QRect place = panel()->geometry();
        const auto below = [&](int distance) {
            return screen.pixelColor(place.center().x(), place.bottom() + distance).lightness();
        };
        for (int distance = 1; distance < 30; ++distance)
            QVERIFY(below(distance) <= below(distance + 1));
        QVERIFY(below(1) > 120);
        QCOMPARE(below(40), 255);
        const auto above = [&](int distance) {
            return screen.pixelColor(place.center().x(), place.top() - distance).lightness();
        };
        QVERIFY(above(4) > below(4));
    }

    void theShadowFollowsTheTray()
    {
        const Compositor compositor;
        add("one.png");
        QTRY_VERIFY_WITH_TIMEOUT(hasShadow(screenPicture(), trayPlace(1)), patience);
        add("two.png");
        QTRY_VERIFY_WITH_TIMEOUT(hasShadow(screenPicture(), trayPlace(2)), patience);
        click(rows().first(), "Dismiss");
        QTRY_VERIFY_WITH_TIMEOUT(hasShadow(screenPicture(), trayPlace(1)), patience);
        const QPoint whereTheSecondRowWas = trayPlace(2).topLeft() + QPoint(300, 10);
        QCOMPARE(screenPicture().pixelColor(whereTheSecondRowWas), white);
        click(rows().first(), "Dismiss");
        QTRY_VERIFY_WITH_TIMEOUT(isBlank(screenPicture()), patience);
        add("three.png");
        QTRY_VERIFY_WITH_TIMEOUT(hasShadow(screenPicture(), trayPlace(1)), patience);
    }

    void aWindowInFrontOfTheTrayCoversTheShadowToo()
    {
        const Compositor compositor;
        add("one.png");
        QTRY_VERIFY_WITH_TIMEOUT(hasShadow(screenPicture(), trayPlace(1)), patience);
        Backdrop front;
        front.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        front.setAttribute(Qt::WA_ShowWithoutActivating);
        front.show();
        front.raise();
        QTRY_VERIFY_WITH_TIMEOUT(isBlank(screenPicture()), patience);
    }

    void clicksGoThroughTheShadow()
    {
        const Compositor compositor;
        add("one.png");
        QTRY_VERIFY_WITH_TIMEOUT(hasShadow(screenPicture(), trayPlace(1)), patience);
        const QPoint inTheShadow(trayPlace(1).center().x(), trayPlace(1).bottom() + 5);
        XDesktop::click(inTheShadow);
        QTRY_COMPARE_WITH_TIMEOUT(m_backdrop->clicks, QList{inTheShadow}, patience);
    }

    void withoutACompositorTheBorderIsStronger()
    {
        add("one.png");
        QTRY_VERIFY_WITH_TIMEOUT(isShapedAndPlain(screenPicture()), patience);
        QVERIFY(!hasShadow(screenPicture(), trayPlace(1)));
        const int strong = borderContrast(screenPicture());

        const Compositor compositor;
        QTRY_VERIFY_WITH_TIMEOUT(hasShadow(screenPicture(), trayPlace(1)), patience);
        const int faint = borderContrast(screenPicture());
        QVERIFY2(strong >= 2 * faint, qPrintable(u"%1 %2"_s.arg(strong).arg(faint)));
    }

    void aCompositorThatHasNotBegunYetBlackensNothing()
    {
        add("one.png");
        QTRY_VERIFY_WITH_TIMEOUT(isShapedAndPlain(screenPicture()), patience);
        const IdleCompositor compositor;
        // Longer than any compositor takes.
        QVERIFY(!QTest::qWaitFor([] { return !isShapedAndPlain(screenPicture()); }, 1500));
    }

    void whenACompositorComesAndGoesNothingIsBlackInTheEnd()
    {
        add("one.png");
        QTRY_VERIFY_WITH_TIMEOUT(isShapedAndPlain(screenPicture()), patience);
        for (int time = 0; time < 2; ++time) {
            {
                const Compositor compositor;
                QTRY_VERIFY_WITH_TIMEOUT(hasShadow(screenPicture(), trayPlace(1)), patience);
            }
            QTRY_VERIFY_WITH_TIMEOUT(isShapedAndPlain(screenPicture()), patience);
        }
        QVERIFY(!QTest::qWaitFor([] { return !isShapedAndPlain(screenPicture()); }, aWhile));
    }

private:
    static constexpr QColor white = QColor(255, 255, 255);

    /// Does not use a screenshot tool, because some of them interfere with the compositor.
    static QImage screenPicture()
    {
        return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    }

    static QRect trayPlace(int count)
    {
        const int height = 72 * count + 6 * (count - 1) + 16;
        return {1600 - 620 - 44, 1000 - height - 44, 620, height};
    }

    static bool hasShadow(const QImage &screen, const QRect &place)
    {
        const QPoint middle = place.center();
        for (const QPoint beside :
             {QPoint(middle.x(), place.top() - 3), QPoint(middle.x(), place.bottom() + 3),
              QPoint(place.left() - 3, middle.y()), QPoint(place.right() + 3, middle.y())}) {
            const QColor color = screen.pixelColor(beside);
            const bool isGrey = color.red() == color.green() && color.green() == color.blue();
            if (!isGrey || color.red() > 250 || color.red() < 100)
                return false;
        }
        return screen.pixel(place.left() + 300, place.top() + 4) == VelmoraPalette::tray().rgb();
    }

    /// Whether only the backdrop is visible at the place of one row and around it.
    static bool isBlank(const QImage &screen)
    {
        const QRect area = trayPlace(1).adjusted(-40, -40, 40, 40);
        for (int y = area.top(); y < area.bottom(); y += 4) {
            for (int x = area.left(); x < area.right(); x += 4) {
                if (screen.pixelColor(x, y) != white)
                    return false;
            }
        }
        return true;
    }

    /// Whether the tray is visible with its corners cut off and nothing around it.
    static bool isShapedAndPlain(const QImage &screen)
    {
        const QRect place = trayPlace(1);
        const QRect around = place.adjusted(-3, -3, 3, 3);
        for (const QRect &area : {place, around}) {
            for (const QPoint corner :
                 {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight()}) {
                if (screen.pixelColor(corner) != white)
                    return false;
            }
        }
        return screen.pixelColor(place.center().x(), around.bottom()) == white &&
               screen.pixel(place.left() + 300, place.top() + 4) == VelmoraPalette::tray().rgb();
    }

    /// How much darker the border is than the tray.
    static int borderContrast(const QImage &screen)
    {
        const QPoint onBorder = trayPlace(1).topLeft() + QPoint(300, 0);
        return VelmoraPalette::tray().red() - screen.pixelColor(onBorder).red();
    }

    std::unique_ptr<Backdrop> m_backdrop;
};

VELMORA_WIDGETS_TEST(TrayEdgeTest)
#include "TrayEdgeTest.moc"
