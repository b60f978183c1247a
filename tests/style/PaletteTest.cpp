// SPDX-License-Identifier: MIT
#include "style/PaletteView.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"
#include "tests/world/TestProgram.h"

#include <QTest>

namespace
{

QImage drawn(PaletteView &view, QSize size)
{
    view.resize(size);
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, {});
    return image;
}

} // namespace

class PaletteTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theElevenColoursHaveTheirComponents_data()
    {
        QTest::addColumn<QColor>("color");
        QTest::addColumn<double>("red");
        QTest::addColumn<double>("green");
        QTest::addColumn<double>("blue");
        QTest::newRow("coral") << VelmoraPalette::coral() << 0.07 << 0.52 << 0.95;
        QTest::newRow("teal") << VelmoraPalette::teal() << 0.0 << 0.7 << 0.62;
        QTest::newRow("amber") << VelmoraPalette::amber() << 0.98 << 0.82 << 0.26;
        QTest::newRow("blue") << VelmoraPalette::blue() << 0.28 << 0.67 << 1.0;
        QTest::newRow("window") << VelmoraPalette::window() << 0.96 << 0.99 << 1.0;
        QTest::newRow("tray") << VelmoraPalette::tray() << 0.91 << 0.97 << 1.0;
        QTest::newRow("card") << VelmoraPalette::card() << 1.0 << 1.0 << 1.0;
        QTest::newRow("cardMuted") << VelmoraPalette::cardMuted() << 0.93 << 0.99 << 0.97;
        QTest::newRow("primaryText") << VelmoraPalette::primaryText() << 0.06 << 0.13 << 0.22;
        QTest::newRow("secondaryText") << VelmoraPalette::secondaryText() << 0.29 << 0.38 << 0.49;
        QTest::newRow("tertiaryText") << VelmoraPalette::tertiaryText() << 0.48 << 0.56 << 0.64;
    }

    void theElevenColoursHaveTheirComponents()
    {
        QFETCH(const QColor, color);
        QFETCH(const double, red);
        QFETCH(const double, green);
        QFETCH(const double, blue);
        QVERIFY(std::abs(color.redF() - red) < 0.0001);
        QVERIFY(std::abs(color.greenF() - green) < 0.0001);
        QVERIFY(std::abs(color.blueF() - blue) < 0.0001);
        QCOMPARE(color.alpha(), 255);
    }

    void anAlphaVariantKeepsRedGreenAndBlue()
    {
        const QColor color = VelmoraPalette::withAlpha(VelmoraPalette::coral(), 0.18);
        QCOMPARE(color.rgb() | 0xff000000, VelmoraPalette::coral().rgb());
        QVERIFY(std::abs(color.alphaF() - 0.18F) < 0.001F);
    }

    void aNewViewShowsTheWindowColourUntilAnotherIsSet()
    {
        PaletteView view;
        QCOMPARE(view.fillColor(), VelmoraPalette::window());
        QCOMPARE(drawn(view, {40, 40}).pixelColor(20, 20).rgb(), VelmoraPalette::window().rgb());

        view.setFillColor(VelmoraPalette::tray());
        QCOMPARE(drawn(view, {40, 40}).pixelColor(20, 20).rgb(), VelmoraPalette::tray().rgb());
    }

    void aThemeChangeRepaintsTheSameColour()
    {
        PaletteView view;
        view.setPalette(QPalette(Qt::black, Qt::black));
        QCOMPARE(drawn(view, {40, 40}).pixelColor(20, 20).rgb(), VelmoraPalette::window().rgb());
    }

    void cornersAreRoundAndTheBorderLiesInside()
    {
        PaletteView view;
        view.setCornerRadius(14);
        view.setBorder(2, Qt::red);
        const QImage image = drawn(view, {100, 60});
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        QCOMPARE(qAlpha(image.pixel(99, 59)), 0);
        QCOMPARE(image.pixelColor(50, 0), QColor(Qt::red));
        QCOMPARE(image.pixelColor(50, 1), QColor(Qt::red));
        QCOMPARE(image.pixelColor(50, 3).rgb(), VelmoraPalette::window().rgb());
    }

    void fontSizesArePixelsOfTheLayout()
    {
        const QFont font = systemFont(14, QFont::DemiBold);
        QCOMPARE(font.pixelSize(), 14);
        QCOMPARE(font.weight(), QFont::DemiBold);
        QCOMPARE(monospacedSystemFont(12).pixelSize(), 12);
    }
};

VELMORA_WIDGETS_TEST(PaletteTest)
#include "PaletteTest.moc"
