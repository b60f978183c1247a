#include "platform/linux/text/LineShape.h"

#include <algorithm>

namespace
{

/// How far the highest letters reach above the base, and the lowest below it, in heights of a small
/// letter: "j" and "Q" of the common typefaces, and a little more.
constexpr double highestReach = 1.6;
constexpr double deepestReach = 0.55;

/// The side of a box is a line of some pixels; rounded corners make it wider.
constexpr double widestWall = 0.3;

/// A gap between words, in heights of a letter: the gaps inside words are below a third, also in
/// monospaced text.
constexpr double wordGap = 0.42;

/// Three letters, the fewest that make a word of a name, are no narrower than their height.
constexpr double narrowestLine = 1.0;

/// The value that half of the blobs, by their widths, do not exceed.
template <typename Value>
int middleOf(const BlobLine &blobs, Value value)
{
    std::vector<std::pair<int, int>> weighted;
    int total = 0;
    for (const QRect &blob : blobs) {
        weighted.emplace_back(value(blob), blob.width());
        total += blob.width();
    }
    std::sort(weighted.begin(), weighted.end());
    int passed = 0;
    for (const auto &[number, weight] : weighted) {
        passed += weight;
        if (2 * passed >= total)
            return number;
    }
    return weighted.back().first;
}

/// The runs of blobs between word gaps.
std::vector<QRect> wordsOf(const BlobLine &blobs, int letterHeight)
{
    std::vector<QRect> words;
    for (const QRect &blob : blobs) {
        if (!words.empty() && blob.left() - words.back().right() - 1 < wordGap * letterHeight)
            words.back() |= blob;
        else
            words.push_back(blob);
    }
    return words;
}

} // namespace

LineRows rowsOf(const BlobLine &blobs)
{
    LineRows rows;
    rows.base = middleOf(blobs, [](const QRect &blob) { return blob.bottom(); });
    rows.letterHeight = middleOf(blobs, [](const QRect &blob) { return blob.height(); });
    return rows;
}

std::vector<QRect> strangersIn(const BlobLine &blobs)
{
    const LineRows rows = rowsOf(blobs);
    const double top = rows.base - highestReach * rows.letterHeight;
    const double bottom = rows.base + deepestReach * rows.letterHeight;
    std::vector<QRect> strangers;
    for (const QRect &blob : blobs) {
        if (blob.top() < top || blob.bottom() > bottom)
            strangers.push_back(blob);
    }
    return strangers;
}

bool isWall(const QRect &blob)
{
    return blob.width() <= std::max(4.0, widestWall * blob.height());
}

std::optional<TextLine> lineOf(const BlobLine &blobs)
{
    TextLine line;
    line.letterHeight = rowsOf(blobs).letterHeight;
    for (const QRect &blob : blobs)
        line.box |= blob;
    if (line.box.width() < narrowestLine * line.letterHeight)
        return std::nullopt;
    line.words = wordsOf(blobs, line.letterHeight);
    return line;
}
