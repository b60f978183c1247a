// SPDX-License-Identifier: MIT
#include "tests/app/welcome/WelcomeWindowParts.h"

#include "style/VelmoraPalette.h"
#include "style/lightAppearance.h"
#include "tests/world/TestProgram.h"

#include <QAbstractItemView>
#include <QFontInfo>

using namespace Qt::StringLiterals;
using namespace WelcomeWindowParts;

namespace
{

QColor blended(const QColor &color, double alpha, const QColor &ground)
{
    const auto mix = [alpha](float over, float under) {
        return float(alpha) * over + float(1 - alpha) * under;
    };
    return QColor::fromRgbF(mix(color.redF(), ground.redF()), mix(color.greenF(), ground.greenF()),
                            mix(color.blueF(), ground.blueF()));
}

bool nearlyEqual(const QColor &one, const QColor &other)
{
    return std::abs(one.red() - other.red()) <= 2 && std::abs(one.green() - other.green()) <= 2 &&
           std::abs(one.blue() - other.blue()) <= 2;
}

/// The colour that paints the label's text.
QColor textColor(const QLabel &label)
{
    return label.palette().color(label.foregroundRole());
}

/// The picture in the same row or card as the label.
QLabel *symbolBeside(const QLabel &label)
{
    for (QLabel *sibling : label.parentWidget()->findChildren<QLabel *>())
        if (!sibling->pixmap().isNull())
            return sibling;
    return nullptr;
}

} // namespace

/// The window's colours, symbols and fonts.
class WelcomeWindowLookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { applyLightAppearance(); }
    void init() { VelmoraSettings::open().clear(); }

    void aStateIsInItsColor_data()
    {
        QTest::addColumn<bool>("on");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QColor>("color");
        QTest::newRow("off pill") << false << "Instant mode off" << VelmoraPalette::amber();
        QTest::newRow("on pill") << true << "Instant mode on" << VelmoraPalette::teal();
        QTest::newRow("ready pill") << true << "Ready for screenshots" << VelmoraPalette::blue();
    }

    void aStateIsInItsColor()
    {
        QFETCH(const bool, on);
        QFETCH(const QString, text);
        QFETCH(const QColor, color);
        WelcomeWindow window(state(on));
        QVERIFY(showActive(window));
        QLabel *pill = label(window, text);
        QVERIFY(pill);
        const QImage image = window.grab(place(*pill)).toImage();
        const QColor ground = VelmoraPalette::window();
        const QColor fill = blended(color, 0.18, ground);
        QVERIFY(nearlyEqual(image.pixelColor(5, pill->height() / 2), fill));
        QVERIFY(nearlyEqual(image.pixelColor(pill->width() / 2, 0), blended(color, 0.24, fill)));
        QVERIFY(nearlyEqual(image.pixelColor(0, 0), ground));
    }

    void aSymbolIsThereInItsColor_data()
    {
        QTest::addColumn<bool>("on");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QColor>("color");
        QTest::newRow("not instant") << false << "Instant" << VelmoraPalette::amber();
        QTest::newRow("instant") << true << "Instant" << VelmoraPalette::teal();
        QTest::newRow("private") << false << "Private" << VelmoraPalette::teal();
        QTest::newRow("folder") << false << "Folder" << VelmoraPalette::blue();
        QTest::newRow("open") << false << "Turn on instant screenshots" << VelmoraPalette::amber();
        QTest::newRow("done") << true << "Instant screenshots are on" << VelmoraPalette::teal();
        QTest::newRow("folder done")
            << false << "Screenshot folder selected" << VelmoraPalette::teal();
        QTest::newRow("naming done") << false << "Smart naming is active" << VelmoraPalette::teal();
        QTest::newRow("staying done")
            << false << "Screenshots stay on this computer" << VelmoraPalette::teal();
        QTest::newRow("permissions")
            << false << "Permissions, in plain English" << VelmoraPalette::blue();
    }

    void aSymbolIsThereInItsColor()
    {
        QFETCH(const bool, on);
        QFETCH(const QString, text);
        QFETCH(const QColor, color);
        WelcomeWindow window(state(on));
        QVERIFY(showActive(window));
        QLabel *title = label(window, text);
        QVERIFY(title);
        QLabel *symbol = symbolBeside(*title);
        QVERIFY(symbol);
        // A thin line has no pixel that is fully in its colour.
        constexpr int tolerance = 48;
        QVERIFY(pixelsOf(*symbol, color, tolerance) > 10);
    }

    void openItemsStandOutAndFinishedOnesRecede()
    {
        const WelcomeWindow off(state(false));
        const WelcomeWindow on(state(true));
        const QLabel *open = label(off, u"Turn on instant screenshots"_s);
        const QLabel *finished = label(on, u"Instant screenshots are on"_s);
        QCOMPARE(textColor(*open), VelmoraPalette::primaryText());
        QCOMPARE(textColor(*finished), VelmoraPalette::secondaryText());
        QCOMPARE(symbolBeside(*open)->size(), QSize(16, 16));
    }

    void theTypeSizesAreTheStatedOnes()
    {
        const WelcomeWindow window(state());
        const auto size = [&window](const QString &start) {
            for (const QLabel *candidate : window.findChildren<QLabel *>())
                if (candidate->text().startsWith(start))
                    return candidate->font().pixelSize();
            return 0;
        };
        QCOMPARE(size(u"Velmora catches"_s), 14);
        QCOMPARE(size(u"Velmora never records"_s), 12);
        QCOMPARE(size(u"Instant mode off"_s), 12);
        QCOMPARE(size(u"Smart naming"_s), 12);
        QCOMPARE(label(window, u"Instant mode off"_s)->font().weight(), QFont::DemiBold);
        QCOMPARE(label(window, u"Smart naming is active"_s)->font().weight(), QFont::Medium);
    }

    void aLongPathIsCutInTheMiddleAndWholeAsToolTip()
    {
        const QString path = u"/home/anna/"_s + QString(300, u'w') + u"/Screenshots"_s;
        WelcomeWindow window(state(false, false, path));
        QVERIFY(showActive(window));
        QCOMPARE(window.width(), 620);
        const QList<QLabel *> paths = labels(window, path);
        QCOMPARE(paths.size(), 2);
        for (QLabel *shown : paths) {
            QCOMPARE(shown->toolTip(), path);
            QVERIFY(QFontInfo(shown->font()).fixedPitch());
            QVERIFY(window.rect().contains(place(*shown)));
            // Both ends are painted, so the cut is in the middle.
            const QImage image = shown->grab().toImage();
            const QColor ground = image.pixelColor(0, 0);
            const auto hasInk = [&image, &ground](const QRect &part) {
                for (int y = part.top(); y <= part.bottom(); ++y)
                    for (int x = part.left(); x <= part.right(); ++x)
                        if (!nearlyEqual(image.pixelColor(x, y), ground))
                            return true;
                return false;
            };
            QVERIFY(hasInk(QRect(0, 0, 30, image.height())));
            QVERIFY(hasInk(QRect(image.width() - 30, 0, 30, image.height())));
        }
    }

    void aDarkDesktopChangesNothing()
    {
        WelcomeWindow light(state());
        QVERIFY(showActive(light));
        const QImage expected = light.grab().toImage();
        light.hide();

        const QPalette before = QApplication::palette();
        QPalette dark(QColor(40, 40, 40), QColor(30, 30, 30));
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            dark.setColor(role, Qt::white);
        QApplication::setPalette(dark);
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        const QImage shown = window.grab().toImage();
        OptionPopUp *position = popUp(window, u"Tray position"_s);
        position->showPopup();
        QVERIFY(QTest::qWaitForWindowExposed(position->view()->window()));
        const int lightPixels = pixelsOf(*position->view(), VelmoraPalette::card());
        position->hidePopup();
        QApplication::setPalette(before);
        QCOMPARE(shown, expected);
        QVERIFY(lightPixels > 1000);
    }
};

VELMORA_WIDGETS_TEST(WelcomeWindowLookTest)
#include "WelcomeWindowLookTest.moc"
