// SPDX-License-Identifier: MIT
#include "style/SymbolImages.h"
#include "style/VelmoraAssets.h"
#include "style/VelmoraPalette.h"
#include "tests/world/TestProgram.h"

#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QStringList symbolNames = {
    u"doc.on.doc"_s,
    u"folder"_s,
    u"folder.fill"_s,
    u"trash"_s,
    u"xmark"_s,
    u"arrow.uturn.backward"_s,
    u"camera.viewfinder"_s,
    u"bolt.fill"_s,
    u"lock.fill"_s,
    u"magnifyingglass"_s,
    u"photo"_s,
    u"checkmark.circle.fill"_s,
    u"circle"_s,
    u"hand.raised.fill"_s,
    u"clock.arrow.circlepath"_s,
    u"bubble.left.and.bubble.right"_s,
};

QImage drawn(const QIcon &icon, int side, double ratio = 1, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(QSize(side, side), ratio, mode)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
}

QRect inkOf(const QImage &image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 24)
                ink |= QRect(x, y, 1, 1);
    return ink;
}

/// The colour of the most opaque pixel.
QColor inkColor(const QImage &image)
{
    QColor strongest(Qt::transparent);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y).alpha() > strongest.alpha())
                strongest = image.pixelColor(x, y);
    return strongest;
}

} // namespace

class SymbolImagesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySymbolIsDrawnInTheMiddleOfItsSquare_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name : symbolNames)
            QTest::newRow(qPrintable(name)) << name;
    }

    void everySymbolIsDrawnInTheMiddleOfItsSquare()
    {
        QFETCH(const QString, name);
        const QIcon icon = symbolIcon(name, Qt::red);
        QVERIFY(!icon.isNull());

        const QImage image = drawn(icon, 64);
        QCOMPARE(image.size(), QSize(64, 64));
        const QRect ink = inkOf(image);
        QVERIFY(ink.width() >= 32 && ink.height() >= 32);
        QVERIFY2((ink.center() - image.rect().center()).manhattanLength() <= 6,
                 qPrintable(u"centre %1,%2"_s.arg(ink.center().x()).arg(ink.center().y())));
        QVERIFY(ink.left() > 0 && ink.top() > 0 && ink.right() < 63 && ink.bottom() < 63);
    }

    void aSymbolIsTintedInTheGivenColour()
    {
        const QColor tint = VelmoraPalette::coral();
        const QColor ink = inkColor(drawn(symbolIcon(symbolNames[2], tint), 64));
        QCOMPARE(ink.rgb(), tint.rgb());
    }

    void aDisabledSymbolIsGreyWhateverItsColour()
    {
        const QIcon icon = symbolIcon(symbolNames[2], Qt::red);
        const QColor ink = inkColor(drawn(icon, 64, 1, QIcon::Disabled));
        QVERIFY(ink.alpha() > 60 && ink.alpha() < 255);
        QVERIFY(ink.saturation() < 80);
        QVERIFY(ink.red() <= ink.blue());
    }

    void aSymbolHasTwiceThePixelsAtTwiceTheScale()
    {
        const QIcon icon = symbolIcon(symbolNames[0], Qt::black);
        const QImage image = drawn(icon, 16, 2);
        QCOMPARE(image.size(), QSize(32, 32));
        QCOMPARE(image.devicePixelRatio(), 2.0);
        QVERIFY(drawn(icon, 16).scaled(32, 32) != image);
    }

    void anUnknownSymbolIsANullIcon()
    {
        QVERIFY(symbolIcon(u"no.such.symbol"_s, Qt::black).isNull());
        QVERIFY(symbolIcon(QString(), Qt::black).isNull());
        QVERIFY(symbolIcon(u"../VelmoraLogo/.."_s, Qt::black).isNull());
    }

    void theLogoIsInFullColour()
    {
        const QImage logo = drawn(VelmoraAssets::logoImage(), 128);
        QSet<QRgb> colours;
        for (int i = 0; i < 128; ++i)
            colours.insert(logo.pixel(i, i) | 0xff000000);
        QVERIFY(colours.size() > 20);
        QCOMPARE(qAlpha(logo.pixel(64, 20)), 255);
        QCOMPARE(qAlpha(logo.pixel(0, 0)), 0);
    }
};

VELMORA_WIDGETS_TEST(SymbolImagesTest)
#include "SymbolImagesTest.moc"
