// SPDX-License-Identifier: MIT
#include "recognition/order/MenuBars.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>

namespace
{

/// A bar has at least this many items of one word each. In heights of a letter, the gaps between
/// items are between these limits and no item is wider than this. The widest gap is at most this
/// many times the narrowest.
constexpr int fewestItems = 4;
constexpr double narrowestGap = 0.75;
constexpr double widestGap = 3;
constexpr double widestItem = 9;
constexpr double greatestGapRatio = 1.6;

/// Monospaced text has such gaps too. When it is large, its letters are far apart as well: its
/// words have at least this many parts on average.
constexpr double partsOfSpacedWord = 1.5;

/// When it is small, it seldom stands alone. Lines above and below are closer than this, in heights
/// of the row; the second figure, which allows for an empty line, is for lines that begin in the
/// same column.
constexpr double closeLine = 0.7;
constexpr double closeInColumn = 2.5;

/// Such lines have letters whose heights differ by less than this factor, and "the same column"
/// means within this share of a letter's height.
constexpr double sameLetters = 1.5;
constexpr double sameLeft = 0.35;

/// Lines from left to right.
using Row = std::vector<const TextLine *>;

std::vector<Row> rowsOf(const std::vector<TextLine> &lines)
{
    Row all;
    std::transform(lines.begin(), lines.end(), std::back_inserter(all),
                   [](const TextLine &line) { return &line; });
    std::stable_sort(all.begin(), all.end(), [](const TextLine *first, const TextLine *second) {
        return first->box.center().y() < second->box.center().y();
    });
    std::vector<Row> rows;
    for (const TextLine *line : all) {
        if (rows.empty() || !areSideBySide(*rows.back().front(), *line))
            rows.emplace_back();
        rows.back().push_back(line);
    }
    for (Row &row : rows) {
        std::stable_sort(row.begin(), row.end(), [](const TextLine *first, const TextLine *second) {
            return first->box.left() < second->box.left();
        });
    }
    return rows;
}

/// Words that are placed like the items of a menu bar.
struct Items {
    QRect box;
    int count = 0;
    int lowestLetter = std::numeric_limits<int>::max();
    int narrowest = std::numeric_limits<int>::max(); ///< of the gaps
    int widest = 0;                                  ///< of the gaps
};

/// The items with one more on the right; nothing when it does not belong to the same bar.
std::optional<Items> extended(Items items, const QRect &word, int letterHeight)
{
    if (word.width() > widestItem * letterHeight)
        return std::nullopt;
    if (items.count > 0) {
        const int gap = word.left() - items.box.right() - 1;
        items.narrowest = std::min(items.narrowest, gap);
        items.widest = std::max(items.widest, gap);
        if (gap < narrowestGap * letterHeight || gap > widestGap * letterHeight ||
            items.widest > greatestGapRatio * items.narrowest)
            return std::nullopt;
    }
    items.box |= word;
    items.lowestLetter = std::min(items.lowestLetter, letterHeight);
    ++items.count;
    return items;
}

/// The row's words, in groups that are as long as possible.
std::vector<Items> itemsIn(const Row &row)
{
    std::vector<Items> groups(1);
    for (const TextLine *line : row) {
        if (double(line->parts.size()) > partsOfSpacedWord * double(line->words.size())) {
            groups.emplace_back();
            continue;
        }
        for (const QRect &word : line->words) {
            if (const auto items = extended(groups.back(), word, line->letterHeight))
                groups.back() = *items;
            else
                groups.push_back(extended({}, word, line->letterHeight).value_or(Items()));
        }
    }
    return groups;
}

/// Whether the line belongs to the same text: close above or below, or less close and in the same
/// column.
bool isCloseTo(const Items &items, const TextLine &line)
{
    const int higher = std::max(line.letterHeight, items.lowestLetter);
    const int lower = std::min(line.letterHeight, items.lowestLetter);
    const bool sameRow =
        std::abs(line.box.center().y() - items.box.center().y()) < items.box.height() / 2;
    if (sameRow || higher >= sameLetters * lower || line.box.right() < items.box.left() ||
        items.box.right() < line.box.left())
        return false;
    const int distance =
        std::max(line.box.top() - items.box.bottom(), items.box.top() - line.box.bottom());
    const bool sameColumn =
        std::abs(line.box.left() - items.box.left()) <= sameLeft * items.lowestLetter;
    return distance <= (sameColumn ? closeInColumn : closeLine) * items.box.height();
}

} // namespace

std::vector<QRect> menuBarsIn(const std::vector<TextLine> &lines)
{
    std::vector<QRect> bars;
    for (const Row &row : rowsOf(lines)) {
        for (const Items &items : itemsIn(row)) {
            const auto isClose = [&](const TextLine &line) { return isCloseTo(items, line); };
            if (items.count >= fewestItems && std::none_of(lines.begin(), lines.end(), isClose))
                bars.push_back(items.box);
        }
    }
    return bars;
}
