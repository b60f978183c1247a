// SPDX-License-Identifier: MIT
#include "recognition/lines/LineGrower.h"

#include <algorithm>
#include <unordered_map>

namespace
{

/// The widest space between words, in heights of a letter. A space is a quarter to a half of that
/// height, in monospaced text about the whole of it; a wider gap begins a new column.
constexpr double widestGap = 1.3;

/// A letter with an ascender is about 1.4 times as high as one without, and with a descender too
/// about twice as high. A blob that differs more belongs to another line.
constexpr double greatestHeightRatio = 2.6;

/// How much of the lower of two neighbours must overlap the other vertically.
constexpr double leastOverlap = 0.6;

/// The highest line, in heights of its highest letter. Without this limit a line could climb.
constexpr double greatestClimb = 1.5;

/// Lines are looked up by rows of this many pixels.
constexpr int bandHeight = 16;

struct GrowingLine {
    BlobLine blobs;
    QRect box;
    int highest = 0;
};

/// How much of the letter overlaps the line vertically, as a share of the lower of the two; 0 when
/// the letter can't continue the line.
double fit(const GrowingLine &line, const QRect &letter)
{
    const double higher = std::max(line.highest, letter.height());
    const double lower = std::min(line.highest, letter.height());
    if (higher > greatestHeightRatio * lower)
        return 0;
    if (letter.left() - line.box.right() > widestGap * (higher + lower) / 2)
        return 0;
    if ((line.box | letter).height() > greatestClimb * higher)
        return 0;
    const int shared =
        std::min(line.box.bottom(), letter.bottom()) - std::max(line.box.top(), letter.top()) + 1;
    return shared / std::min<double>(line.box.height(), letter.height());
}

class LineGrower
{
public:
    /// Letters and walls must be added from left to right.
    void addLetter(const QRect &letter)
    {
        int index = bestLine(letter);
        if (index < 0) {
            index = int(m_lines.size());
            m_lines.emplace_back();
        }
        GrowingLine &line = at(index);
        const QRect before = line.box;
        line.blobs.push_back(letter);
        line.box |= letter;
        line.highest = std::max(line.highest, letter.height());
        for (int band = bandOf(line.box.top()); band <= bandOf(line.box.bottom()); ++band) {
            if (before.isNull() || band < bandOf(before.top()) || band > bandOf(before.bottom()))
                m_bands[band].push_back(index);
        }
    }

    /// Ends the lines on the left that the wall passes from top to bottom.
    void addWall(const QRect &wall)
    {
        for (int band = bandOf(wall.top()); band <= bandOf(wall.bottom()); ++band) {
            const auto lines = m_bands.find(band);
            if (lines == m_bands.end())
                continue;
            std::erase_if(lines->second, [&](int index) {
                const QRect &box = at(index).box;
                return wall.top() <= box.top() && box.bottom() <= wall.bottom();
            });
        }
    }

    std::vector<BlobLine> take()
    {
        std::vector<BlobLine> lines;
        for (GrowingLine &line : m_lines)
            lines.push_back(std::move(line.blobs));
        return lines;
    }

private:
    static int bandOf(int row) { return row / bandHeight; }

    /// The index of the line that the letter continues best, or -1.
    int bestLine(const QRect &letter)
    {
        int best = -1;
        double bestFit = leastOverlap;
        for (int band = bandOf(letter.top()); band <= bandOf(letter.bottom()); ++band) {
            std::vector<int> &lines = m_bands[band];
            // A line that ended too far to the left can't be continued.
            std::erase_if(lines, [&](int index) {
                const GrowingLine &line = at(index);
                return letter.left() - line.box.right() >
                       widestGap * greatestHeightRatio * line.highest;
            });
            for (int index : lines) {
                const double lineFit = fit(at(index), letter);
                if (lineFit > bestFit) {
                    best = index;
                    bestFit = lineFit;
                }
            }
        }
        return best;
    }

    GrowingLine &at(int index) { return m_lines[std::size_t(index)]; }

    std::vector<GrowingLine> m_lines;
    /// The lines that may still be continued, by the bands of rows that they touch.
    std::unordered_map<int, std::vector<int>> m_bands;
};

struct Step {
    QRect box;
    bool isWall;
};

} // namespace

std::vector<BlobLine> growLines(const std::vector<QRect> &letters, const std::vector<QRect> &walls)
{
    std::vector<Step> steps;
    steps.reserve(letters.size() + walls.size());
    for (const QRect &letter : letters)
        steps.push_back({letter, false});
    for (const QRect &wall : walls)
        steps.push_back({wall, true});
    std::stable_sort(steps.begin(), steps.end(), [](const Step &first, const Step &second) {
        return first.box.left() < second.box.left();
    });
    LineGrower grower;
    for (const Step &step : steps) {
        if (step.isWall)
            grower.addWall(step.box);
        else
            grower.addLetter(step.box);
    }
    return grower.take();
}
