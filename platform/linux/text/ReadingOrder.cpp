#include "platform/linux/text/ReadingOrder.h"

#include <algorithm>

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

/// A heading's letters are this many times as high as those of most of the text.
constexpr double headingRatio = 1.6;

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

} // namespace

std::vector<TextLine> inReadingOrder(std::vector<TextLine> lines)
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
    // Rows of blocks: each starts with the highest block that is left, and takes those beside it.
    std::vector<TextLine> ordered;
    std::vector<bool> taken(blocks.size());
    for (std::size_t first = 0; first < blocks.size(); ++first) {
        if (taken[first])
            continue;
        std::vector<std::size_t> row;
        for (std::size_t other = first; other < blocks.size(); ++other) {
            if (!taken[other] && sideBySide(blocks[first].lines[0], blocks[other].lines[0])) {
                taken[other] = true;
                row.push_back(other);
            }
        }
        std::stable_sort(row.begin(), row.end(), [&](std::size_t left, std::size_t right) {
            return blocks[left].lines[0].box.left() < blocks[right].lines[0].box.left();
        });
        for (std::size_t block : row) {
            for (TextLine &line : blocks[block].lines)
                ordered.push_back(std::move(line));
        }
    }
    const double h = commonLetterHeight(ordered) * headingRatio;
    std::stable_partition(ordered.begin(), ordered.end(), [&](const TextLine &line) {
        return line.letterHeight >= h && line.box.width() >= 5 * line.letterHeight;
    });
    return ordered;
}
