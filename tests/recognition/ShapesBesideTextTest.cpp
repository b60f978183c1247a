// SPDX-License-Identifier: MIT
#include "tests/recognition/DrawnPage.h"
#include "tests/recognition/TextRecognizerFixture.h"
#include "tests/world/TestProgram.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace
{

QStringList sortedWords(const QString &text)
{
    QStringList words = text.split(u' ');
    words.sort();
    return words;
}

} // namespace

/// Check boxes, icons and pictures are not read as letters, and letters are not taken for them.
class ShapesBesideTextTest : public QObject, private TextRecognizerFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void texturesAndIconsGiveNoWords()
    {
        DrawnPage page(QSize(800, 600));
        page.texture(QRect(0, 0, 800, 400), 7);
        for (int x = 20; x < 760; x += 60)
            page.icon(QRect(x, 450, 24, 24), x);
        QCOMPARE(textOf(page.image()), QString());
    }

    void anEmptyCheckBoxIsNoLetterOfItsLabel_data()
    {
        QTest::addColumn<bool>("round");
        QTest::addColumn<int>("pixels");
        for (const bool round : {true, false}) {
            for (const int pixels : {12, 15, 20, 26})
                QTest::addRow("%s, %d", round ? "round" : "square", pixels) << round << pixels;
        }
    }
    void anEmptyCheckBoxIsNoLetterOfItsLabel()
    {
        QFETCH(bool, round);
        QFETCH(int, pixels);
        const QStringList labels{u"Server"_s, u"Quarterly report"_s, u"monitor"_s};
        QImage picture = pictureOf(labels, Qt::black, QColor(240, 240, 230), pixels);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::gray, 1.3));
        painter.setBrush(Qt::white);
        for (int index = 0; index < labels.size(); ++index) {
            // Directly before the label, on its base line.
            const QRectF box(leftMargin - 1.4 * pixels, 20.5 + 0.1 * pixels + 3 * pixels * index,
                             pixels, pixels);
            painter.drawRoundedRect(box, round ? pixels / 2.0 : 2, round ? pixels / 2.0 : 2);
        }
        painter.end();
        QCOMPARE(sortedWords(textOf(picture)), sortedWords(labels.join(u' ')));
    }

    void anIconMayStandBeforeACheckBox()
    {
        DrawnPage page(QSize(480, 80));
        page.font(u"DejaVu Sans"_s, 15);
        page.text(QPoint(90, 45), u"Server domain"_s);
        page.box(QRect(71, 32, 13, 13));
        page.icon(QRect(48, 31, 15, 15), 30);
        QCOMPARE(textOf(page.image()), u"Server domain"_s);
    }

    void aRoundFirstLetterIsNoCheckBox_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<int>("pixels");
        for (const char *family : {"DejaVu Sans", "DejaVu Sans Mono", "DejaVu Serif"}) {
            for (const int pixels : {12, 16, 26})
                QTest::addRow("%s, %d", family, pixels) << QString::fromLatin1(family) << pixels;
        }
    }
    void aRoundFirstLetterIsNoCheckBox()
    {
        QFETCH(QString, family);
        QFETCH(int, pixels);
        DrawnPage page(QSize(480, 160));
        page.font(family, pixels);
        page.text(QPoint(20, 40), u"Oldest orange"_s);
        page.text(QPoint(20, 120), u"Ocean"_s);
        QCOMPARE(textOf(page.image()), u"Oldest orange Ocean"_s);
    }

    void aRoundSecondLetterIsNoCheckBox_data() { aRoundFirstLetterIsNoCheckBox_data(); }
    void aRoundSecondLetterIsNoCheckBox()
    {
        QFETCH(QString, family);
        QFETCH(int, pixels);
        DrawnPage page(QSize(480, 60));
        page.font(family, pixels);
        page.text(QPoint(20, 40), u"Go back, no ticket"_s);
        const QString text = textOf(page.image());
        QVERIFY2(text.startsWith("Go back"_L1), qPrintable(text));
    }

    void captionsCloseToPicturesInARowAreRead()
    {
        // At a reduced scale, the pictures with their captions look like the letters of one word.
        const QStringList captions{u"Harbour"_s, u"Mountain"_s, u"Evening"_s, u"Village"_s};
        QImage page(800, 200, QImage::Format_RGB32);
        page.fill(Qt::white);
        QPainter painter(&page);
        QFont font(u"DejaVu Sans"_s);
        font.setPixelSize(13);
        painter.setFont(font);
        std::mt19937 random(3);
        for (int index = 0; index < captions.size(); ++index) {
            const QRect picture(20 + 176 * index, 20, 160, 112);
            for (int x = picture.left(); x < picture.right(); x += 4) {
                for (int y = picture.top(); y < picture.bottom(); y += 4)
                    painter.fillRect(x, y, 4, 4, QColor(QRgb(random() | 0xff000000U)));
            }
            painter.drawText(picture.bottomLeft() + QPoint(0, 12), captions[index]);
        }
        painter.end();
        QCOMPARE(textOf(page), captions.join(u' '));
    }
};

VELMORA_WIDGETS_TEST(ShapesBesideTextTest)
#include "ShapesBesideTextTest.moc"
