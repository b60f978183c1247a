// SPDX-License-Identifier: MIT
#include "recognition/order/ReadingOrder.h"

#include "recognition/order/MenuBars.h"

#include <algorithm>
#include <iterator>

namespace
{

/// Lines of one block: the widest distance between them, in heights of a letter, and the greatest
/// ratio of their letters' heights.
constexpr double widestLeading = 1.6;
constexpr double greatestHeightRatio = 1.35;

/// The left ends of a block's lines differ by at most this many heights of a letter.
constexpr double greatestIndent = 2.5;

struct Block {
    std::vector<TextLine> lines;
};

bool continues(const Block &block, const TextLine &line)
{
    const TextLine &last = block.lines.back();
    const double higher = std::max(last.letterHeight, line.letterHeight);
    const double lower = std::min(last.letterHeight, line.letterHeight);
    const int leading = line.box.top() - last.box.bottom() - 1;
    const bool overlapping =
        line.box.left() <= last.box.right() && last.box.left() <= line.box.right();
    return overlapping && higher <= greatestHeightRatio * lower && leading > -0.5 * lower &&
           leading <= widestLeading * lower &&
           std::abs(line.box.left() - last.box.left()) <= greatestIndent * higher;
}

/// A heading's letters are at least this many times as high as those of most of the text, and the
/// heading is at least this many of its letters' heights wide.
constexpr double headingRatio = 1.6;
constexpr double narrowestHeading = 5;

/// The parts of a heading are words, on average at least this many heights of a letter wide. A row
/// of icons has narrower parts.
constexpr double narrowestParts = 1.8;

/// The height of the letters that most of the text is written in.
int commonLetterHeight(const std::vector<TextLine> &lines)
{
    std::vector<std::pair<int, int>> weighted;
    int total = 0;
    for (const TextLine &line : lines) {
        weighted.emplace_back(line.letterHeight, line.box.width());
        total += line.box.width();
    }
    std::sort(weighted.begin(), weighted.end());
    int passed = 0;
    for (const auto &[height, width] : weighted) {
        passed += width;
        if (2 * passed >= total)
            return height;
    }
    return 0;
}

bool isHeading(const TextLine &line, int commonHeight)
{
    const double width = double(line.box.width()) / line.letterHeight;
    return line.letterHeight >= headingRatio * commonHeight && width >= narrowestHeading &&
           width >= narrowestParts * double(line.parts.size());
}

/// Lines that follow one another closely in one column.
std::vector<Block> blocksOf(std::vector<TextLine> lines)
{
    std::stable_sort(lines.begin(), lines.end(), [](const TextLine &first, const TextLine &second) {
        return first.box.top() < second.box.top();
    });
    std::vector<Block> blocks;
    for (TextLine &line : lines) {
        const auto block =
            std::find_if(blocks.rbegin(), blocks.rend(),
                         [&](const Block &candidate) { return continues(candidate, line); });
        if (block != blocks.rend())
            block->lines.push_back(std::move(line));
        else
            blocks.push_back({{std::move(line)}});
    }
    return blocks;
}

/// The blocks row by row: each row starts with the highest remaining block and takes the blocks
/// that begin beside it, from left to right.
std::vector<Block> inRows(std::vector<Block> blocks)
{
    std::vector<Block> ordered;
    for (auto first = blocks.begin(); first != blocks.end();) {
        const TextLine highest = first->lines.front();
        const auto rowEnd = std::stable_partition(first, blocks.end(), [&](const Block &block) {
            return areSideBySide(highest, block.lines.front());
        });
        std::stable_sort(first, rowEnd, [](const Block &left, const Block &right) {
            return left.lines.front().box.left() < right.lines.front().box.left();
        });
        std::move(first, rowEnd, std::back_inserter(ordered));
        first = rowEnd;
    }
    return ordered;
}

/// A line belongs to a menu bar when at least this share of it is in the bar: there may be an icon
/// before the bar.
constexpr double leastShare = 0.8;

bool isOf(const QRect &menuBar, const TextLine &line)
{
    const int row = line.box.center().y();
    return menuBar.top() <= row && row <= menuBar.bottom() &&
           (menuBar & line.box).width() >= leastShare * line.box.width();
}

} // namespace

std::vector<TextLine> inReadingOrder(std::vector<TextLine> lines)
{
    const int commonHeight = commonLetterHeight(lines);
    const std::vector<QRect> menuBars = menuBarsIn(lines);
    std::vector<TextLine> ordered;
    for (Block &block : inRows(blocksOf(std::move(lines))))
        std::move(block.lines.begin(), block.lines.end(), std::back_inserter(ordered));
    const auto rest =
        std::stable_partition(ordered.begin(), ordered.end(),
                              [&](const TextLine &line) { return isHeading(line, commonHeight); });
    std::stable_partition(rest, ordered.end(), [&](const TextLine &line) {
        return std::none_of(menuBars.begin(), menuBars.end(),
                            [&](const QRect &bar) { return isOf(bar, line); });
    });
    return ordered;
}
