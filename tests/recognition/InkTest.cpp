// SPDX-License-Identifier: MIT
#include "recognition/ink/InkColours.h"
#include "recognition/ink/LineReach.h"
#include "recognition/ink/QuietRows.h"
#include "recognition/lines/CheckBoxes.h"
#include "tests/recognition/DrawnPage.h"
#include "tests/world/TestProgram.h"

#include <QTest>

namespace
{

using namespace Qt::StringLiterals;

/// Upright strokes, one pixel apart: in columns of pixels this looks like a word.
void drawWord(QImage &image, const QRect &area, QRgb ink)
{
    for (int x = area.left(); x <= area.right(); x += 2) {
        for (int y = area.top(); y <= area.bottom(); ++y)
            image.setPixel(x, y, ink);
    }
}

QImage page(QColor ground = Qt::white)
{
    QImage image(200, 40, QImage::Format_RGB32);
    image.fill(ground);
    return image;
}

/// Ten pixels high.
TextLine lineOfText()
{
    TextLine line;
    line.letterHeight = 10;
    line.wordGap = 4;
    return line;
}

} // namespace

class InkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void inkIsSeparatedFromItsBackground_data()
    {
        QTest::addColumn<QColor>("ink");
        QTest::addColumn<QColor>("ground");
        QTest::newRow("dark on light") << QColor(Qt::black) << QColor(Qt::white);
        QTest::newRow("light on dark") << QColor(Qt::white) << QColor(40, 42, 54);
        QTest::newRow("equally bright") << QColor(200, 0, 0) << QColor(0, 102, 0);
        QTest::newRow("pale") << QColor(150, 150, 150) << QColor(Qt::white);
    }
    void inkIsSeparatedFromItsBackground()
    {
        QFETCH(QColor, ink);
        QFETCH(QColor, ground);
        QImage image = page(ground);
        const QRect word(20, 15, 41, 10);
        drawWord(image, word, ink.rgb());
        const InkColours colours(image, word.adjusted(-10, -5, 10, 5));
        QVERIFY(std::abs(colours.depth(ground.rgb())) < 3);
        QVERIFY(colours.inkDepth() > 40);
        QVERIFY(std::abs(colours.depth(ink.rgb()) - colours.inkDepth()) < 3);
        // Half a stroke's edge is half as deep.
        const QRgb edge = qRgb((ink.red() + ground.red()) / 2, (ink.green() + ground.green()) / 2,
                               (ink.blue() + ground.blue()) / 2);
        QVERIFY(std::abs(colours.depth(edge) - colours.inkDepth() / 2) < 3);
    }

    void aPlainAreaHasNoInk()
    {
        const QImage image = page();
        const InkColours colours(image, image.rect());
        QCOMPARE(colours.inkDepth(), 0.0F);
        QCOMPARE(colours.depth(qRgb(255, 255, 255)), 0.0F);
    }

    void aWordIsFollowedToItsEnds()
    {
        QImage image = page();
        drawWord(image, {50, 15, 61, 10}, qRgb(0, 0, 0));
        drawWord(image, {125, 15, 21, 10}, qRgb(0, 0, 0)); // the next word
        // Every second row is bare, otherwise the strokes would be walls.
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 15; y < 25; y += 3)
                image.setPixel(x, y, qRgb(255, 255, 255));
        }
        const QRect found(60, 15, 31, 10);
        const InkColours colours(image, found);
        const QRect whole = withWholeWords(image, found, colours, lineOfText(), 0);
        QCOMPARE(whole.left(), 50);
        QCOMPARE(whole.right(), 110);
        // Columns that another piece has taken are not included.
        QCOMPARE(withWholeWords(image, found, colours, lineOfText(), 55).left(), 56);
    }

    void aWordEndsAtTheSideOfItsBox()
    {
        QImage image = page();
        drawWord(image, {50, 15, 61, 10}, qRgb(0, 0, 0));
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 15; y < 25; y += 3)
                image.setPixel(x, y, qRgb(255, 255, 255));
        }
        for (int y = 0; y < image.height(); ++y)
            image.setPixel(114, y, qRgb(0, 0, 0));
        const QRect found(60, 15, 31, 10);
        const InkColours colours(image, found);
        QCOMPARE(withWholeWords(image, found, colours, lineOfText(), 0).right(), 110);
    }

    void anEmptyCheckBoxIsNoLetterOfItsLabel_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<bool>("isLeftOut");
        QTest::newRow("an empty box") << u"box"_s << true;
        QTest::newRow("an empty circle") << u"circle"_s << true;
        QTest::newRow("a full box") << u"full"_s << false;
        QTest::newRow("a letter") << u"letter"_s << false;
    }
    void anEmptyCheckBoxIsNoLetterOfItsLabel()
    {
        QFETCH(QString, before);
        QFETCH(bool, isLeftOut);
        DrawnPage drawn({240, 40});
        drawn.font(u"DejaVu Sans"_s, 16);
        const QRect label = drawn.text({40, 26}, u"server is busy"_s);
        QImage image = drawn.image();
        const QRect box(16, 14, 12, 12);
        {
            QPainter painter(&image);
            painter.setPen(Qt::black);
            if (before == u"box")
                painter.drawRect(box);
            else if (before == u"full")
                painter.fillRect(box, Qt::black);
            else if (before == u"circle")
                painter.drawEllipse(box);
            else
                painter.drawText(18, 26, u"N"_s);
        }
        TextLine line;
        line.letterHeight = 9;
        line.wordGap = 4;
        const QRect area(12, label.top(), label.right() - 12 + 1, label.height());
        const InkColours colours(image, area);
        const QRect words = withoutCheckBox(image, area, colours, line);
        QCOMPARE(words.right(), area.right());
        if (isLeftOut)
            QVERIFY(words.left() > box.right() && words.left() <= label.left());
        else
            QCOMPARE(words, area);
    }

    void aLineStandsBetweenQuietRowsAndATextureDoesNot()
    {
        DrawnPage drawn({300, 80});
        const QRect line = drawn.text({20, 45}, u"Quarterly report"_s);
        const InkColours colours(drawn.image(), line);
        QVERIFY(standsBetweenQuietRows(drawn.image(), line, colours, 12));

        DrawnPage textured({300, 80});
        textured.texture({0, 0, 300, 80}, 3);
        const QRect middle(100, 30, 100, 12);
        const InkColours spots(textured.image(), middle);
        QVERIFY(!standsBetweenQuietRows(textured.image(), middle, spots, 12));
    }
};

VELMORA_WIDGETS_TEST(InkTest)
#include "InkTest.moc"
