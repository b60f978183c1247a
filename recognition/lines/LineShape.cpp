// SPDX-License-Identifier: MIT
#include "recognition/lines/LineShape.h"

#include <algorithm>

namespace
{

/// How far letters extend above and below the base line at most, in heights of a small letter.
/// Taken from "j" and "Q" of common typefaces, with a little added.
constexpr double highestReach = 1.6;
constexpr double deepestReach = 0.55;

/// The widest side of a box, in pixels. Rounded corners make it wider than the line itself.
constexpr double widestWall = 0.3;

/// In heights of a letter: a gap smaller than the first is inside a word, a gap larger than the
/// second is between words. In between, the line's own gaps decide, because the letters of a
/// monospaced "ill" are as far apart as the words of proportional text.
constexpr double surelyOneWord = 0.25;
constexpr double surelyTwoWords = 0.9;

/// The word gap of a line that has only one word.
constexpr double likelyTwoWords = 0.35;

/// Gaps between words are at least this many times as wide as gaps between letters.
constexpr double gapJump = 1.3;

/// At least this share of a line's blobs, by their widths, have one base row, within this share of
/// a letter's height. Icons and textures rarely do; of real lines, fewer than one in a hundred does
/// not.
constexpr double leastEvenness = 0.42;
constexpr double unevenness = 0.12;

/// A name uses words of three letters or more. Three letters and the gap beside them are at least
/// this wide, in heights of a letter and in pixels.
constexpr double narrowestLine = 1.7;
constexpr int narrowestPixels = 11;

/// A word of three letters is wider than this, in heights of its highest letter. A line without
/// anything wider is a row of icons, check boxes or single letters.
constexpr double narrowestWord = 1.3;

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

std::vector<int> gapsOf(const BlobLine &blobs)
{
    std::vector<int> gaps;
    int right = blobs.front().right();
    for (const QRect &blob : blobs) {
        if (blob.left() > right + 1)
            gaps.push_back(blob.left() - right - 1);
        right = std::max(right, blob.right());
    }
    std::sort(gaps.begin(), gaps.end());
    return gaps;
}

/// The narrowest gap between words: where the sorted gaps of the line grow most. Nothing when they
/// grow evenly.
std::optional<double> wordGapOf(const BlobLine &blobs, int letterHeight)
{
    const double limit = surelyTwoWords * letterHeight;
    double below = surelyOneWord * letterHeight;
    double greatestJump = gapJump;
    std::optional<double> wordGap;
    for (int width : gapsOf(blobs)) {
        const double gap = std::min<double>(width, limit);
        if (gap >= greatestJump * below) {
            greatestJump = gap / below;
            wordGap = (below + gap) / 2;
        }
        below = std::max(below, gap);
    }
    return wordGap;
}

/// The runs of blobs between gaps of this width or more.
std::vector<QRect> runsOf(const BlobLine &blobs, double gap)
{
    std::vector<QRect> runs;
    for (const QRect &blob : blobs) {
        if (!runs.empty() && blob.left() - runs.back().right() - 1 < gap)
            runs.back() |= blob;
        else
            runs.push_back(blob);
    }
    return runs;
}

double evennessOf(const BlobLine &blobs, const LineRows &rows)
{
    const double tolerance = std::max(1.0, unevenness * rows.letterHeight);
    int even = 0;
    int total = 0;
    for (const QRect &blob : blobs) {
        total += blob.width();
        if (std::abs(blob.bottom() - rows.base) <= tolerance)
            even += blob.width();
    }
    return double(even) / total;
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
    const LineRows rows = rowsOf(blobs);
    line.letterHeight = rows.letterHeight;
    for (const QRect &blob : blobs)
        line.box |= blob;
    line.evenness = evennessOf(blobs, rows);
    if (line.box.width() < std::max<double>(narrowestPixels, narrowestLine * line.letterHeight) ||
        line.evenness < leastEvenness)
        return std::nullopt;
    const std::optional<double> wordGap = wordGapOf(blobs, line.letterHeight);
    line.wordGap = wordGap.value_or(likelyTwoWords * line.letterHeight);
    line.words = runsOf(blobs, wordGap.value_or(surelyTwoWords * line.letterHeight));
    line.parts = runsOf(blobs, surelyOneWord * line.letterHeight);
    if (std::all_of(line.words.begin(), line.words.end(), [&](const QRect &word) {
            return word.width() < narrowestWord * line.letterHeight;
        }))
        return std::nullopt;
    return line;
}
