// SPDX-License-Identifier: MIT
#include "recognition/order/ReadingOrder.h"
#include "tests/world/TestProgram.h"

#include <QTest>

namespace
{

/// A line of two words with this position and size.
TextLine lineAt(int x, int y, int width = 100, int height = 10)
{
    TextLine line;
    line.box = QRect(x, y, width, height);
    line.letterHeight = height;
    line.words = {QRect(x, y, width / 2 - 5, height),
                  QRect(x + width / 2, y, width - width / 2, height)};
    line.parts = line.words;
    return line;
}

/// Words of 30 points, this far apart, in one line 10 points high.
TextLine itemsAt(int x, int y, int count, int gap)
{
    TextLine line = lineAt(x, y, count * 30 + (count - 1) * gap);
    line.words.clear();
    for (int item = 0; item < count; ++item)
        line.words.emplace_back(x + item * (30 + gap), y, 30, 10);
    line.parts = line.words;
    return line;
}

QList<QPoint> order(std::vector<TextLine> lines)
{
    QList<QPoint> places;
    for (const TextLine &line : inReadingOrder(std::move(lines)))
        places.append(line.box.topLeft());
    return places;
}

} // namespace

class ReadingOrderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreReadFromTopToBottom()
    {
        QCOMPARE(order({lineAt(10, 60), lineAt(10, 20), lineAt(10, 40)}),
                 QList<QPoint>({{10, 20}, {10, 40}, {10, 60}}));
    }

    void whatStandsSideBySideIsReadFromLeftToRight()
    {
        QCOMPARE(order({lineAt(400, 20), lineAt(10, 21), lineAt(200, 19)}),
                 QList<QPoint>({{10, 21}, {200, 19}, {400, 20}}));
    }

    void aColumnIsReadWholeBeforeTheNext()
    {
        QCOMPARE(order({lineAt(10, 20), lineAt(300, 20), lineAt(10, 35), lineAt(300, 35)}),
                 QList<QPoint>({{10, 20}, {10, 35}, {300, 20}, {300, 35}}));
    }

    void aHeadingIsReadFirst()
    {
        QCOMPARE(order({lineAt(10, 10), lineAt(300, 60, 200, 24), lineAt(10, 100), lineAt(10, 115),
                        lineAt(10, 130)}),
                 QList<QPoint>({{300, 60}, {10, 10}, {10, 100}, {10, 115}, {10, 130}}));
    }

    void aRowOfLargeIconsIsNoHeading()
    {
        TextLine icons = lineAt(10, 60, 400, 24);
        icons.parts.clear();
        for (int x = 10; x < 410; x += 40)
            icons.parts.emplace_back(x, 60, 24, 24);
        QCOMPARE(order({lineAt(10, 10), icons, lineAt(10, 100), lineAt(10, 115), lineAt(10, 130),
                        lineAt(10, 145), lineAt(10, 160)})
                     .front(),
                 QPoint(10, 10));
    }

    void aMenuBarIsReadLast()
    {
        QCOMPARE(order({itemsAt(10, 10, 5, 14), lineAt(10, 60), lineAt(300, 60)}),
                 QList<QPoint>({{10, 60}, {300, 60}, {10, 10}}));
    }

    void aMenuBarWhoseItemsAreLinesOfTheirOwnIsReadLast()
    {
        QCOMPARE(order({itemsAt(10, 10, 1, 0), itemsAt(54, 11, 2, 14), itemsAt(142, 10, 1, 0),
                        lineAt(10, 60)}),
                 QList<QPoint>({{10, 60}, {10, 10}, {54, 11}, {142, 10}}));
    }

    void whatIsNoMenuBarKeepsItsPlace()
    {
        const TextLine text = lineAt(10, 60);
        const QList<QPoint> asItStands{{10, 10}, {10, 60}};
        QCOMPARE(order({itemsAt(10, 10, 3, 14), text}), asItStands); // too few items
        QCOMPARE(order({itemsAt(10, 10, 5, 5), text}), asItStands);  // words of a sentence
        QCOMPARE(order({itemsAt(10, 10, 5, 40), text}), asItStands); // columns of a table
        TextLine uneven = itemsAt(10, 10, 5, 14);
        for (std::size_t item = 2; item < uneven.words.size(); ++item)
            uneven.words[item].translate(16 * int(item / 2), 0);
        QCOMPARE(order({uneven, text}), asItStands);
    }

    void aHeadingIsNoMenuBar()
    {
        TextLine heading = itemsAt(10, 10, 4, 20);
        heading.letterHeight = 20;
        QCOMPARE(order({lineAt(10, 60), lineAt(10, 75), lineAt(10, 90), heading}).front(),
                 QPoint(10, 10));
    }

    void monospacedTextIsNoMenuBar()
    {
        QCOMPARE(order({itemsAt(10, 10, 5, 14), itemsAt(10, 26, 6, 14), lineAt(300, 60)}),
                 QList<QPoint>({{10, 10}, {10, 26}, {300, 60}}));
        const TextLine overlapping = itemsAt(10, 19, 6, 14);
        QCOMPARE(order({itemsAt(10, 10, 5, 14), overlapping, lineAt(300, 60)}),
                 QList<QPoint>({{10, 10}, {10, 19}, {300, 60}}));
        const TextLine afterAnEmptyLine = itemsAt(10, 42, 6, 14);
        QCOMPARE(order({itemsAt(10, 10, 5, 14), afterAnEmptyLine, lineAt(300, 60)}),
                 QList<QPoint>({{10, 10}, {10, 42}, {300, 60}}));
        TextLine spaced = itemsAt(10, 10, 5, 14);
        spaced.parts.clear();
        for (const QRect &word : spaced.words) {
            for (int letter = 0; letter < 3; ++letter)
                spaced.parts.emplace_back(word.left() + 11 * letter, 10, 7, 10);
        }
        QCOMPARE(order({spaced, lineAt(10, 60)}), QList<QPoint>({{10, 10}, {10, 60}}));
    }

    void nothingGivesNothing() { QVERIFY(order({}).isEmpty()); }
};

VELMORA_PLAIN_TEST(ReadingOrderTest)

#include "ReadingOrderTest.moc"
