// SPDX-License-Identifier: MIT
#include "recognition/lines/CheckBoxes.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace
{

/// A pixel counts as ink from this share of the deepest ink. The frame of a box is fainter than its
/// label.
constexpr float leastInk = 0.2F;

/// The lowest and the highest box, in heights of a letter, and the lowest in pixels.
constexpr double lowestBox = 0.6;
constexpr double highestBox = 2.5;
constexpr int lowestPixels = 5;

/// Boxes and circles are about as wide as high: the ratio is below this factor. In most typefaces
/// that is also true of "O", but not in monospaced ones, where letters are far apart.
constexpr double squareness = 1.18;

/// The gap between a box and its label, in heights of a letter. It is also at least this many times
/// as wide as the gap between the label's first letters, which tells a box from an "O".
constexpr double boxGap = 0.25;
constexpr double gapJump = 1.5;

/// There may be an icon before the box.
constexpr int mostTried = 2;

/// Which pixels of a picture are ink. The inside of a box may be lighter than the background.
class Ink
{
public:
    Ink(const QImage &picture, const InkColours &colours)
        : m_picture(picture), m_colours(colours), m_least(leastInk * colours.inkDepth())
    {
    }

    bool isAt(int x, int y) const
    {
        const auto *row = reinterpret_cast<const QRgb *>(m_picture.constScanLine(y));
        return m_colours.depth(row[x]) >= m_least;
    }

    bool isIn(const QRect &area) const
    {
        const QRect seen = area & m_picture.rect();
        for (int y = seen.top(); y <= seen.bottom(); ++y) {
            for (int x = seen.left(); x <= seen.right(); ++x) {
                if (isAt(x, y))
                    return true;
            }
        }
        return false;
    }

private:
    const QImage &m_picture;
    const InkColours &m_colours;
    float m_least;
};

/// Columns with ink, between columns without any.
struct Run {
    int left;
    int right;
};

/// The first run in these rows, from a column on.
std::optional<Run> nextRun(const Ink &ink, const QRect &area, int from)
{
    const auto isInked = [&](int x) { return ink.isIn({x, area.top(), 1, area.height()}); };
    while (from <= area.right() && !isInked(from))
        ++from;
    if (from > area.right())
        return std::nullopt;
    int to = from;
    while (to < area.right() && isInked(to + 1))
        ++to;
    return Run{from, to};
}

/// The run's ink, followed up and down beyond the area. Letters end inside the area, boxes do not.
QRect boxOf(const Ink &ink, const QRect &area, const Run &run, int highest)
{
    QRect box(QPoint(run.left, area.top()), QPoint(run.right, area.bottom()));
    const auto isBare = [&](int y) { return !ink.isIn({box.left(), y, box.width(), 1}); };
    while (box.height() > 1 && isBare(box.top()))
        box.setTop(box.top() + 1);
    while (box.height() > 1 && isBare(box.bottom()))
        box.setBottom(box.bottom() - 1);
    while (box.height() <= highest && !isBare(box.top() - 1))
        box.setTop(box.top() - 1);
    while (box.height() <= highest && !isBare(box.bottom() + 1))
        box.setBottom(box.bottom() + 1);
    return box;
}

/// A closed frame, square or round, with nothing in it.
bool isEmptyFrame(const Ink &ink, const QRect &box)
{
    if (box.width() > squareness * box.height() || box.height() > squareness * box.width())
        return false;
    const int side = std::max(1, box.width() / 4);
    const int end = std::max(1, box.height() / 4);
    const QPoint middle = box.center();
    return !ink.isIn(box.adjusted(side, end, -side, -end)) &&
           ink.isIn({box.left(), middle.y(), side, 1}) &&
           ink.isIn({box.right() - side + 1, middle.y(), side, 1}) &&
           ink.isIn({middle.x(), box.top(), 1, end}) &&
           ink.isIn({middle.x(), box.bottom() - end + 1, 1, end});
}

/// Where the label of an empty check box begins; nothing when the run is not a check box.
std::optional<int> labelBehind(const Run &run, const Ink &ink, const QRect &area, int letterHeight)
{
    const auto highest = int(std::lround(highestBox * letterHeight));
    const std::optional<Run> label = nextRun(ink, area, run.right + 1);
    if (!label || run.right - run.left >= highest)
        return std::nullopt;
    const int gap = label->left - run.right - 1;
    const bool isWord = label->right - label->left > 2 * letterHeight;
    const std::optional<Run> next = nextRun(ink, area, label->right + 1);
    const int lettersGap = next && !isWord ? next->left - label->right - 1 : 0;
    if (gap < boxGap * letterHeight || gap < gapJump * lettersGap)
        return std::nullopt;
    const QRect box = boxOf(ink, area, run, highest);
    if (box.height() < std::max<double>(lowestPixels, lowestBox * letterHeight))
        return std::nullopt;
    return isEmptyFrame(ink, box) ? std::optional(label->left) : std::nullopt;
}

} // namespace

QRect withoutCheckBox(const QImage &picture, const QRect &area, const InkColours &colours,
                      const TextLine &line)
{
    const Ink ink(picture, colours);
    std::optional<Run> run = nextRun(ink, area, area.left());
    for (int tried = 0; run && tried < mostTried; ++tried) {
        if (const std::optional<int> label = labelBehind(*run, ink, area, line.letterHeight))
            return area.adjusted(*label - 1 - area.left(), 0, 0, 0);
        const int end = run->right;
        run = nextRun(ink, area, end + 1);
        if (run && run->left - end - 1 < line.wordGap)
            break; // "No": letters of one word
    }
    return area;
}
