#include "platform/linux/text/ReadingOrder.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace
{

/// Lines of one block: the most that lies between them, and by how much their letters differ, in
/// heights of a letter.
constexpr double widestLeading = 1.6;
constexpr double greatestHeightRatio = 1.35;

/// A block's lines begin below each other within this many heights of a letter.
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

/// Whether both begin at the same height, so that the left one is read first.
bool sideBySide(const TextLine &first, const TextLine &second)
{
    return std::abs(first.box.center().y() - second.box.center().y()) <
           std::max(first.letterHeight, second.letterHeight) / 2;
}

/// A heading's letters are this many times as high as those of most of the text, and it is this
/// many of its own letters' heights wide.
constexpr double headingRatio = 1.6;
constexpr double narrowestHeading = 5;

/// Between gaps a heading holds words, this many heights of a letter wide in the mean; a row of
/// icons holds narrower things.
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

/// Lines that follow one another closely, in one column.
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

/// The blocks row by row: each row starts with the highest block that is left, and takes those
/// that begin beside it, from left to right.
std::vector<Block> inRows(std::vector<Block> blocks)
{
    std::vector<Block> ordered;
    for (auto first = blocks.begin(); first != blocks.end();) {
        const TextLine highest = first->lines.front();
        const auto rowEnd = std::stable_partition(first, blocks.end(), [&](const Block &block) {
            return sideBySide(highest, block.lines.front());
        });
        std::stable_sort(first, rowEnd, [](const Block &left, const Block &right) {
            return left.lines.front().box.left() < right.lines.front().box.left();
        });
        std::move(first, rowEnd, std::back_inserter(ordered));
        first = rowEnd;
    }
    return ordered;
}

/// A menu bar has at least so many items, each of one word, in one row. Its items are this far
/// apart and this wide at most, in heights of a letter, and their gaps differ at most by this
/// factor.
constexpr std::size_t fewestItems = 4;
constexpr double narrowestItemGap = 0.75;
constexpr double widestItemGap = 3;
constexpr double widestItem = 9;
constexpr double greatestGapRatio = 1.6;

/// Monospaced text has such gaps too, but it seldom stands alone: lines above and below are closer
/// than this, in heights of the row, and their letters differ less than by this factor.
constexpr double closeLine = 0.7;
constexpr double sameLetters = 1.5;

/// A line is of a menu bar when this share of it lies there: an icon may stand before the bar.
constexpr double leastShare = 0.8;

using Lines = std::vector<TextLine>;

/// The lines from left to right in rows: what stands at the same height.
std::vector<Lines> rowsOf(Lines lines)
{
    std::vector<Lines> rows;
    std::stable_sort(lines.begin(), lines.end(), [](const TextLine &first, const TextLine &second) {
        return first.box.center().y() < second.box.center().y();
    });
    for (TextLine &line : lines) {
        if (rows.empty() || !sideBySide(rows.back().front(), line))
            rows.emplace_back();
        rows.back().push_back(std::move(line));
    }
    for (Lines &row : rows) {
        std::stable_sort(row.begin(), row.end(), [](const TextLine &first, const TextLine &second) {
            return first.box.left() < second.box.left();
        });
    }
    return rows;
}

struct MenuBar {
    QRect box;
    int letterHeight = std::numeric_limits<int>::max(); ///< of the lowest letters
};

/// Where the menu bars are in a row of lines.
class MenuBarFinder
{
public:
    explicit MenuBarFinder(const Lines &row)
    {
        for (const TextLine &line : row) {
            for (const QRect &word : line.words)
                add(word, line.letterHeight);
        }
        end();
    }

    const std::vector<MenuBar> &bars() const { return m_bars; }

private:
    void add(const QRect &word, int letterHeight)
    {
        if (m_items > 0) {
            const int gap = word.left() - m_bar.box.right() - 1;
            const int narrowest = std::min(gap, m_narrowestGap);
            const int widest = std::max(gap, m_widestGap);
            if (gap < narrowestItemGap * letterHeight || gap > widestItemGap * letterHeight ||
                widest > greatestGapRatio * narrowest) {
                end();
            } else {
                m_narrowestGap = narrowest;
                m_widestGap = widest;
            }
        }
        if (word.width() > widestItem * letterHeight) {
            end();
            return;
        }
        m_bar.box |= word;
        m_bar.letterHeight = std::min(m_bar.letterHeight, letterHeight);
        ++m_items;
    }

    void end()
    {
        if (m_items >= fewestItems)
            m_bars.push_back(m_bar);
        m_bar = {};
        m_items = 0;
        m_narrowestGap = std::numeric_limits<int>::max();
        m_widestGap = 0;
    }

    std::vector<MenuBar> m_bars;
    MenuBar m_bar;
    std::size_t m_items = 0;
    int m_narrowestGap = std::numeric_limits<int>::max();
    int m_widestGap = 0;
};

bool isClose(const TextLine &line, const MenuBar &bar)
{
    if (line.box.right() < bar.box.left() || bar.box.right() < line.box.left())
        return false;
    const int higher = std::max(line.letterHeight, bar.letterHeight);
    const int lower = std::min(line.letterHeight, bar.letterHeight);
    const int distance =
        std::max(line.box.top() - bar.box.bottom(), bar.box.top() - line.box.bottom());
    return higher < sameLetters * lower && distance > 0 && distance <= closeLine * bar.box.height();
}

std::vector<MenuBar> menuBarsIn(const Lines &lines)
{
    std::vector<MenuBar> bars;
    for (const Lines &row : rowsOf(lines)) {
        const MenuBarFinder finder(row);
        std::copy_if(finder.bars().begin(), finder.bars().end(), std::back_inserter(bars),
                     [&](const MenuBar &bar) {
                         return std::none_of(lines.begin(), lines.end(), [&](const TextLine &line) {
                             return isClose(line, bar);
                         });
                     });
    }
    return bars;
}

} // namespace

std::vector<TextLine> inReadingOrder(std::vector<TextLine> lines)
{
    const int commonHeight = commonLetterHeight(lines);
    const std::vector<MenuBar> menuBars = menuBarsIn(lines);
    std::vector<TextLine> ordered;
    for (Block &block : inRows(blocksOf(std::move(lines))))
        std::move(block.lines.begin(), block.lines.end(), std::back_inserter(ordered));
    std::stable_partition(ordered.begin(), ordered.end(),
                          [&](const TextLine &line) { return isHeading(line, commonHeight); });
    std::stable_partition(ordered.begin(), ordered.end(), [&](const TextLine &line) {
        return std::none_of(menuBars.begin(), menuBars.end(), [&](const MenuBar &bar) {
            return (bar.box & line.box).width() >= leastShare * line.box.width();
        });
    });
    return ordered;
}
