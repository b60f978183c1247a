// SPDX-License-Identifier: MIT
#include "tests/tray/ControllerFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/WindowManager.h"
#include "tests/world/XDesktop.h"

#include "style/VelmoraPalette.h"
#include "tray/FloatingTrayPanel.h"
#include "tray/PanelHistory.h"
#include "tray/ScreenshotRowView.h"

#include <QApplication>
#include <QFile>
#include <QScreen>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using TrayOnScreen::panel;
using TrayOnScreen::rows;

/// The tray on a screen with two pixels per point.
class TrayAtDoubleScaleTest : public QObject, ControllerFixture
{
    Q_OBJECT

public:
    static void initMain() { qputenv("QT_SCALE_FACTOR", "2"); }

private Q_SLOTS:
    void initTestCase() { QCOMPARE(qGuiApp->primaryScreen()->devicePixelRatio(), 2.0); }
    void init() { begin(); }
    void cleanup() { end(); }

    void itsPlaceIsKnownInThePixelsOfAPictureOfTheScreen()
    {
        add("one.png");
        QVERIFY(QTest::qWaitForWindowExposed(panel()));
        QTRY_COMPARE(screenPicture().pixelColor(inPicture(panel()->geometry().center())).rgb(),
                     qRgb(255, 255, 255));
        const FileTime now = FileTimes::now();
        const QList<PanelPlace> places = m_tray->placesBetween(now - 10ms, now);
        QCOMPARE(places.size(), 1);

        const QImage picture = screenPicture();
        const QRect shown = places.first().inPicture(picture.size());
        QCOMPARE(shown.size(), QSize(1240, 176));
        const QRgb tray = VelmoraPalette::tray().rgb();
        QCOMPARE(picture.pixelColor(shown.center().x(), shown.top() + 8).rgb(), tray);
        QCOMPARE(picture.pixelColor(shown.center().x(), shown.bottom() - 8).rgb(), tray);
        QCOMPARE(picture.pixelColor(shown.left() + 8, shown.center().y()).rgb(), tray);
        QCOMPARE(picture.pixelColor(shown.right() - 8, shown.center().y()).rgb(), tray);
        const QRgb desktop = picture.pixelColor(100, 100).rgb();
        QCOMPARE(picture.pixelColor(shown.center().x(), shown.top() - 1).rgb(), desktop);
        QCOMPARE(picture.pixelColor(shown.center().x(), shown.bottom() + 1).rgb(), desktop);
    }

    void aTrayThatHasGoneIsKnownForItsTimeOnly()
    {
        QVERIFY(m_tray->placesBetween(FileTime(), FileTimes::now()).isEmpty());
        add("one.png");
        QVERIFY(QTest::qWaitForWindowExposed(panel()));
        click(rows().first(), "Dismiss");
        QTRY_VERIFY(!panel()->isVisible());
        const FileTime gone = FileTimes::now();
        QCOMPARE(m_tray->placesBetween(gone - 10s, gone).size(), 1);
        QVERIFY(m_tray->placesBetween(gone + 1s, gone + 2s).isEmpty());
    }

    void withoutACompositorItsCornersAreCutAsFinelyAsThePixelsAre()
    {
        add("one.png");
        QTRY_COMPARE(screenPicture().pixelColor(inPicture(panel()->geometry().center())).rgb(),
                     qRgb(255, 255, 255));
        const QImage picture = screenPicture();
        const QPoint corner = inPicture(panel()->geometry().topLeft());
        constexpr double radius = 2 * 14;
        for (int row = 0; row < radius; ++row) {
            int cut = 0;
            while (picture.pixelColor(corner + QPoint(cut, row)).lightness() < 40)
                ++cut;
            const double up = radius - row - 0.5;
            const double wanted = radius - std::sqrt(radius * radius - up * up);
            QVERIFY2(std::abs(cut - wanted) <= 1, qPrintable(u"%1: %2"_s.arg(row).arg(cut)));
        }
    }

    void withACompositorItsCornersAreBlended()
    {
        const Compositor compositor;
        QTRY_VERIFY(m_rig->platform.panelWindow->showsTransparency());
        add("one.png");
        QTRY_COMPARE(screenPicture().pixelColor(inPicture(panel()->geometry().center())).rgb(),
                     qRgb(255, 255, 255));
        const QImage picture = screenPicture();
        const QPoint corner = inPicture(panel()->geometry().topLeft());
        const int outside = picture.pixelColor(corner).lightness();
        const int inside = VelmoraPalette::tray().lightness();
        QVERIFY(outside < inside - 60);
        int blended = 0;
        for (int row = 1; row < 28; ++row) {
            for (int column = 0; column < 28; ++column) {
                const int lightness = picture.pixelColor(corner + QPoint(column, row)).lightness();
                blended += lightness > outside + 20 && lightness < inside - 40 ? 1 : 0;
            }
        }
        QVERIFY2(blended >= 10, qPrintable(QString::number(blended)));
    }

private:
    QImage screenPicture() const
    {
        const QString file = m_rig->place(u"screen.png"_s).toLocalFile();
        XDesktop::run(u"maim"_s, {file});
        return QImage(file);
    }

    static QPoint inPicture(QPoint points) { return points * 2; }
};

VELMORA_WIDGETS_TEST(TrayAtDoubleScaleTest)
#include "TrayAtDoubleScaleTest.moc"
