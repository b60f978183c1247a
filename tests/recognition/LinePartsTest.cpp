// SPDX-License-Identifier: MIT
#include "recognition/lines/LineGrower.h"
#include "recognition/lines/LineShape.h"
#include "recognition/order/MenuBars.h"
#include "tests/world/TestProgram.h"

#include <QTest>

namespace
{

constexpr int letter = 10;

/// Letters 6 wide and 10 high, 2 apart, words 6 apart; "." is a space.
std::vector<QRect> letters(const char *text, int x = 0, int base = 100)
{
    std::vector<QRect> boxes;
    for (; *text; ++text) {
        if (*text == '.') {
            x += 4;
            continue;
        }
        boxes.emplace_back(x, base - letter + 1, 6, letter);
        x += 8;
    }
    return boxes;
}

std::vector<QRect> joined(std::vector<QRect> first, const std::vector<QRect> &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TextLine menu(int y, const std::vector<int> &gaps)
{
    TextLine line;
    line.letterHeight = letter;
    int x = 10;
    for (int gap : gaps) {
        line.words.emplace_back(x, y, 40, letter);
        x += 40 + gap;
    }
    line.words.emplace_back(x, y, 40, letter);
    for (const QRect &word : line.words)
        line.box |= word;
    line.parts = line.words;
    return line;
}

} // namespace

class LinePartsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lettersSideBySideAreOneLine()
    {
        const auto lines = growLines(letters("one.line"), {});
        QCOMPARE(lines.size(), 1U);
        QCOMPARE(lines.front().size(), 7U);
    }

    void lettersComeFromLeftToRightWhateverTheirOrder()
    {
        std::vector<QRect> shuffled = letters("abcdef");
        std::reverse(shuffled.begin(), shuffled.end());
        const auto lines = growLines(shuffled, {});
        QCOMPARE(lines.size(), 1U);
        QVERIFY(std::is_sorted(
            lines.front().begin(), lines.front().end(),
            [](const QRect &one, const QRect &other) { return one.left() < other.left(); }));
    }

    void whatStandsBelowIsAnotherLine()
    {
        QCOMPARE(growLines(joined(letters("above"), letters("below", 0, 114)), {}).size(), 2U);
    }

    void whatStandsFarAwayIsAnotherLine()
    {
        QCOMPARE(growLines(joined(letters("left"), letters("near", 30 + 12)), {}).size(), 1U);
        QCOMPARE(growLines(joined(letters("left"), letters("far", 30 + 16)), {}).size(), 2U);
    }

    void whatIsMuchHigherIsAnotherLine()
    {
        QCOMPARE(growLines(joined(letters("small"), {QRect(42, 70, 30, 31)}), {}).size(), 2U);
        QCOMPARE(growLines(joined(letters("small"), {QRect(42, 87, 6, 14)}), {}).size(), 1U);
    }

    void aWallEndsTheLinesThatItPassesWholly()
    {
        const std::vector<QRect> row = letters("ab.cd");
        QCOMPARE(growLines(row, {QRect(16, 80, 1, 40)}).size(), 2U);
        QCOMPARE(growLines(row, {QRect(16, 95, 1, 40)}).size(), 1U);
    }

    void mostLettersTellTheRowsOfALine()
    {
        const LineRows rows = rowsOf(joined(letters("text"), {QRect(40, 91, 6, 14)}));
        QCOMPARE(rows.base, 100);
        QCOMPARE(rows.letterHeight, letter);
    }

    void whatSticksOutOfALineIsAStranger()
    {
        const QRect ascender(80, 86, 6, 15);
        const QRect descender(90, 91, 6, 14);
        const QRect icon(100, 80, 20, 28);
        const BlobLine line = joined(letters("more.text"), {ascender, descender, icon});
        QCOMPARE(strangersIn(line), std::vector<QRect>{icon});
    }

    void aWallIsHighAndNarrow()
    {
        QVERIFY(isWall({0, 0, 3, 60}));
        QVERIFY(isWall({0, 0, 4, 8}));
        QVERIFY(!isWall({0, 0, 30, 60}));
    }

    void gapsPartWords()
    {
        const auto line = lineOf(letters("two.words"));
        QVERIFY(line);
        QCOMPARE(line->words.size(), 2U);
        QCOMPARE(line->letterHeight, letter);
        QCOMPARE(line->evenness, 1.0);
        QVERIFY(line->wordGap > 2 && line->wordGap <= 6);
        QCOMPARE(line->box, QRect(0, 91, 66, letter));
        QCOMPARE(lineOf(letters("one"))->words.size(), 1U);
    }

    void whatIsTooNarrowOrTooUnevenIsNoText()
    {
        QVERIFY(!lineOf(letters("a")));
        // Rising like a curve.
        BlobLine uneven;
        for (int step = 0; step < 8; ++step)
            uneven.emplace_back(8 * step, 91 - 3 * step, 6, letter);
        QVERIFY(!lineOf(uneven));
        // Single boxes, far apart.
        BlobLine icons;
        for (int x : {0, 20, 40, 60})
            icons.emplace_back(x, 91, letter, letter);
        QVERIFY(!lineOf(icons));
    }

    void aRowOfSingleWordsIsAMenuBar()
    {
        const auto bars = menuBarsIn({menu(5, {15, 16, 15, 17})});
        QCOMPARE(bars.size(), 1U);
        QCOMPARE(bars.front().left(), 10);
        QVERIFY(menuBarsIn({menu(5, {15, 16})}).empty());         // too few
        QVERIFY(menuBarsIn({menu(5, {4, 4, 4, 4})}).empty());     // a sentence
        QVERIFY(menuBarsIn({menu(5, {15, 28, 12, 29})}).empty()); // unevenly spaced
    }

    void aRowWithTextCloseBelowIsNoMenuBar()
    {
        QVERIFY(menuBarsIn({menu(5, {15, 16, 15, 17}), menu(20, {4, 4, 4})}).empty());
        QCOMPARE(menuBarsIn({menu(5, {15, 16, 15, 17}), menu(80, {4, 4, 4})}).size(), 1U);
    }
};

VELMORA_PLAIN_TEST(LinePartsTest)
#include "LinePartsTest.moc"
