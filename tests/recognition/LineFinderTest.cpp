// SPDX-License-Identifier: MIT
#include "recognition/lines/LineFinder.h"

#include "recognition/lines/LinePieces.h"
#include "recognition/lines/PictureLevels.h"
#include "tests/recognition/DrawnPage.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

std::vector<TextLine> linesIn(const DrawnPage &page, const QList<QRect> &leftOut = {})
{
    return findLines(
        opaquePicture(page.image()), [] { return false; }, leftOut);
}

/// How many lines contain at least half of the area, and have about its height.
int linesOver(const std::vector<TextLine> &lines, const QRect &area)
{
    return int(std::count_if(lines.begin(), lines.end(), [&](const TextLine &line) {
        const QRect shared = line.box & area;
        return 2 * shared.width() > area.width() && 2 * shared.height() > area.height() &&
               line.box.height() < 2 * area.height();
    }));
}

} // namespace

class LineFinderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatStandsInAnAreaThatIsLeftOutIsNotFound()
    {
        for (const int pixels : {14, 60}) {
            DrawnPage page(QSize(1200, 400));
            page.font(u"DejaVu Sans"_s, pixels);
            const QRect above = page.text(QPoint(20, 80), u"Quarterly Report"_s);
            const QRect panel(10, 150, 1100, 200);
            const QRect inside = page.text(QPoint(20, 280), u"copied earlier"_s);
            QCOMPARE(linesOver(linesIn(page), inside), 1);
            const auto lines = linesIn(page, {panel});
            QCOMPARE(linesOver(lines, above), 1);
            QVERIFY(std::none_of(lines.begin(), lines.end(),
                                 [&](const TextLine &line) { return line.box.intersects(panel); }));
        }
    }

    void aLineThatGoesIntoAnAreaThatIsLeftOutEndsThere()
    {
        DrawnPage page(QSize(500, 60));
        page.text(QPoint(20, 40), u"Quarterly"_s);
        page.text(QPoint(104, 40), u"dismissed"_s);
        const auto lines = linesIn(page, {QRect(100, 0, 300, 60)});
        QCOMPARE(lines.size(), 1U);
        QVERIFY(lines.front().box.right() < 104);
    }

    void aLineIsFoundInEveryColourAndSize_data()
    {
        QTest::addColumn<QColor>("ink");
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<int>("pixels");
        for (int pixels : {9, 10, 12, 16, 24, 32, 48, 72, 110, 140}) {
            QTest::addRow("dark on light, %d", pixels)
                << QColor(Qt::black) << QColor(Qt::white) << pixels;
            QTest::addRow("light on dark, %d", pixels)
                << QColor(Qt::white) << QColor(40, 42, 54) << pixels;
        }
        QTest::addRow("red on green, equally bright")
            << QColor(200, 0, 0) << QColor(0, 102, 0) << 14;
        QTest::addRow("pale grey on white") << QColor(150, 150, 150) << QColor(Qt::white) << 14;
        QTest::addRow("grey on black") << QColor(110, 110, 110) << QColor(Qt::black) << 14;
    }
    void aLineIsFoundInEveryColourAndSize()
    {
        QFETCH(QColor, ink);
        QFETCH(QColor, ground);
        QFETCH(int, pixels);
        DrawnPage page(QSize(40 + 16 * pixels, 4 * pixels), ground);
        page.ink(ink).font(u"DejaVu Sans"_s, pixels);
        const QRect line = page.text(QPoint(20, 2 * pixels), u"Quarterly Report"_s);
        QCOMPARE(linesOver(linesIn(page), line), 1);
    }

    void columnsAreNotReadAcross()
    {
        DrawnPage page(QSize(600, 200));
        for (int row = 0; row < 5; ++row) {
            page.text(QPoint(20, 30 + 30 * row), u"Sidebar"_s);
            page.text(QPoint(140, 30 + 30 * row), u"The content beside it"_s);
        }
        const std::vector<TextLine> lines = linesIn(page);
        QCOMPARE(lines.size(), 10U);
        for (const TextLine &line : lines)
            QVERIFY(line.box.right() < 130 || line.box.left() > 130);
    }

    void theSideOfABoxEndsALine()
    {
        DrawnPage page(QSize(400, 80));
        const QRect first = page.text(QPoint(20, 45), u"Apply"_s);
        const QRect second = page.text(QPoint(first.right() + 9, 45), u"Discard"_s);
        page.box(QRect(QPoint(10, 20), QPoint(first.right() + 4, 60)));
        const std::vector<TextLine> lines = linesIn(page);
        QCOMPARE(linesOver(lines, first), 1);
        QCOMPARE(linesOver(lines, second), 1);
        for (const TextLine &line : lines)
            QVERIFY(!line.box.contains(QPoint(first.right() + 5, 40)));
    }

    void anIconBesideALineIsNoPartOfIt_data()
    {
        QTest::addColumn<int>("degrees");
        for (int degrees : {0, 30, 45, 90})
            QTest::addRow("%d degrees", degrees) << degrees;
    }
    void anIconBesideALineIsNoPartOfIt()
    {
        QFETCH(int, degrees);
        DrawnPage page(QSize(400, 100));
        page.icon(QRect(20, 30, 40, 40), degrees);
        const QRect text = page.text(QPoint(90, 56), u"Downloads"_s);
        const std::vector<TextLine> lines = linesIn(page);
        QCOMPARE(linesOver(lines, text), 1);
        for (const TextLine &line : lines)
            QVERIFY(line.box.left() > 60 || !line.box.intersects(text));
    }

    void rulesAndFramesAreNoLines()
    {
        DrawnPage page(QSize(600, 400));
        page.box(QRect(20, 20, 560, 360));
        page.box(QRect(40, 40, 100, 24));
        for (int y = 100; y < 360; y += 20)
            page.box(QRect(40, y, 500, 0));
        QCOMPARE(linesIn(page).size(), 0U);
    }

    void aLineOfManyWordsIsKnownByItsGaps()
    {
        DrawnPage page(QSize(600, 60));
        page.font(u"DejaVu Sans"_s, 24);
        page.text(QPoint(20, 40), u"three little words"_s);
        const std::vector<TextLine> lines = linesIn(page);
        QCOMPARE(lines.size(), 1U);
        QCOMPARE(lines.front().words.size(), 3U);
    }

    void aLongLineIsCutBetweenWordsOnly_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<int>("pixels");
        for (const char *family : {"DejaVu Sans", "DejaVu Sans Mono", "Liberation Mono"}) {
            for (int pixels : {11, 14, 18, 24})
                QTest::addRow("%s, %d", family, pixels) << QString::fromLatin1(family) << pixels;
        }
    }
    void aLongLineIsCutBetweenWordsOnly()
    {
        QFETCH(QString, family);
        QFETCH(int, pixels);
        const QString text = u"yellow illusion fill still illegal little jolly village million"_s;
        DrawnPage page(QSize(1200, 60));
        page.font(family, pixels);
        page.text(QPoint(20, 40), text);
        QFont font(family);
        font.setPixelSize(pixels);
        QList<int> starts;
        for (int index = 0; index < text.size(); ++index) {
            if (index == 0 || text[index - 1] == u' ')
                starts.append(20 + QFontMetrics(font).horizontalAdvance(text.left(index)));
        }
        int pieces = 0;
        for (const TextLine &line : linesIn(page)) {
            for (const QRect &piece : piecesOf(line)) {
                ++pieces;
                QVERIFY(std::any_of(starts.begin(), starts.end(), [&](int start) {
                    return std::abs(start - piece.left()) <= pixels / 3;
                }));
            }
        }
        QVERIFY(pieces >= 2);
    }

    void ofTooManyLinesTheHighestStay()
    {
        constexpr int columns = 40;
        constexpr int rows = 200;
        DrawnPage page(QSize(columns * 80, rows * 24));
        page.font(u"DejaVu Sans"_s, 12);
        for (int column = 0; column < columns; ++column) {
            for (int row = 0; row < rows; ++row)
                page.text(QPoint(80 * column + 4, 24 * row + 16), u"Apply"_s);
        }
        const std::vector<TextLine> lines = linesIn(page);
        QCOMPARE(lines.size(), 3000U);
        const auto lowest = std::max_element(lines.begin(), lines.end(),
                                             [](const TextLine &first, const TextLine &second) {
                                                 return first.box.top() < second.box.top();
                                             });
        QVERIFY(lowest->box.top() < 24 * (3000 / columns + 1));
    }

    void cancellingEndsTheSearch()
    {
        DrawnPage page(QSize(600, 60));
        page.text(QPoint(20, 40), u"never looked at"_s);
        QCOMPARE(findLines(opaquePicture(page.image()), [] { return true; }).size(), 0U);
    }
};

VELMORA_WIDGETS_TEST(LineFinderTest)

#include "LineFinderTest.moc"
