// SPDX-License-Identifier: MIT
#include "recognition/lines/LineFinder.h"

#include "recognition/lines/LineGrower.h"
#include "recognition/lines/LineShape.h"
#include "recognition/lines/PictureLevels.h"

#include <algorithm>

namespace
{

/// The picture itself, its half and its quarter.
constexpr int levels = 3;

/// The lowest and highest letters that are searched for on one level, in its pixels. The small
/// letters of 8 pixel text are 4 pixels high; higher ones are found on the next level.
constexpr int lowestLetter = 4;
constexpr int highestLetter = 40;

/// The lowest letters that are searched for on the halved levels, in their pixels. Smaller ones are
/// found better one level below.
constexpr int lowestOnHalved = 13;

/// At most this many lines are considered. A full page on a large screen has a few hundred.
constexpr std::ptrdiff_t maximumLines = 3000;

/// A line is dropped when a larger one covers this share of it.
constexpr double coveredShare = 0.5;

/// A small line within a larger one is text of its own if its letters have at most this share of
/// the other's letter height, it is itself at most this share of the other's height, and it is at
/// least this many letter heights wide.
constexpr double smallerLetters = 0.6;
constexpr double lowerLine = 0.75;
constexpr double textWidth = 2.5;

/// When such lines fill this share of the larger one, the larger one is a box around them.
constexpr double filledShare = 0.15;

/// The lines of one level. They are grown twice: first to find out which blobs are icons and sides
/// of boxes, then without the icons, and ending at the sides of boxes.
std::vector<BlobLine> linesOf(const std::vector<QRect> &blobs)
{
    std::vector<QRect> letters;
    std::vector<QRect> walls;
    for (const QRect &blob : blobs) {
        if (blob.height() > highestLetter && isWall(blob))
            walls.push_back(blob);
        else if (blob.height() >= lowestLetter && blob.height() <= highestLetter)
            letters.push_back(blob);
    }
    std::vector<QRect> kept;
    for (const BlobLine &line : growLines(letters, walls)) {
        const std::vector<QRect> strangers = strangersIn(line);
        for (const QRect &blob : line) {
            if (std::find(strangers.begin(), strangers.end(), blob) == strangers.end())
                kept.push_back(blob);
        }
        std::copy_if(strangers.begin(), strangers.end(), std::back_inserter(walls), isWall);
    }
    return growLines(kept, walls);
}

QRect scaled(const QRect &box, int factor)
{
    return {box.x() * factor, box.y() * factor, box.width() * factor, box.height() * factor};
}

TextLine scaled(TextLine line, int factor)
{
    line.box = scaled(line.box, factor);
    line.letterHeight *= factor;
    line.wordGap *= factor;
    for (QRect &word : line.words)
        word = scaled(word, factor);
    for (QRect &part : line.parts)
        part = scaled(part, factor);
    return line;
}

qint64 areaOf(const QRect &box)
{
    return qint64(box.width()) * box.height();
}

/// Whether the line may be text on a picture that was mistaken for the larger one.
bool mayBeWrittenOn(const TextLine &larger, const TextLine &line)
{
    return line.letterHeight <= smallerLetters * larger.letterHeight &&
           line.box.height() <= lowerLine * larger.box.height() &&
           line.box.width() >= textWidth * line.letterHeight;
}

/// Whether `larger` is a box that contains lines of small text, rather than one line of large text
/// whose letters' parts were mistaken for lines.
bool isBoxAround(const TextLine &larger, const std::vector<TextLine> &lines)
{
    double area = 0;
    for (const TextLine &line : lines) {
        if (mayBeWrittenOn(larger, line))
            area += double(areaOf(larger.box & line.box));
    }
    return area >= filledShare * double(areaOf(larger.box));
}

/// Drops the lines within larger ones: parts of large letters, and lines found on two levels. A
/// dropped line that may be text written on the larger one is kept in its `covered`.
std::vector<TextLine> withoutCovered(std::vector<TextLine> lines)
{
    const std::vector<TextLine> all = lines;
    std::erase_if(lines, [&](const TextLine &line) { return isBoxAround(line, all); });
    std::stable_sort(lines.begin(), lines.end(), [](const TextLine &first, const TextLine &second) {
        return areaOf(first.box) > areaOf(second.box);
    });
    std::vector<TextLine> kept;
    for (TextLine &line : lines) {
        const auto covering = std::find_if(kept.begin(), kept.end(), [&](const TextLine &larger) {
            return double(areaOf(larger.box & line.box)) > coveredShare * double(areaOf(line.box));
        });
        if (covering == kept.end())
            kept.push_back(std::move(line));
        else if (mayBeWrittenOn(*covering, line))
            covering->covered.push_back(std::move(line));
    }
    for (TextLine &line : kept)
        line.covered = withoutCovered(std::move(line.covered));
    return kept;
}

/// Removes the blobs in areas of the picture that are not searched.
void leaveOut(const QList<QRect> &areas, int factor, std::vector<QRect> &blobs)
{
    for (const QRect &area : areas) {
        std::erase_if(blobs,
                      [&](const QRect &blob) { return area.contains(blob.center() * factor); });
    }
}

/// At most `maximumLines` lines, those nearest to the top.
std::vector<TextLine> highest(std::vector<TextLine> lines)
{
    if (std::ptrdiff_t(lines.size()) <= maximumLines)
        return lines;
    const auto end = lines.begin() + maximumLines;
    std::nth_element(lines.begin(), end, lines.end(),
                     [](const TextLine &first, const TextLine &second) {
                         return first.box.top() < second.box.top();
                     });
    lines.erase(end, lines.end());
    return lines;
}

} // namespace

std::vector<TextLine> findLines(const QImage &picture, const std::function<bool()> &cancelled,
                                const QList<QRect> &leftOut)
{
    std::vector<TextLine> lines;
    int factor = 1;
    for (std::vector<QRect> &blobs : blobsOnLevels(picture, levels, cancelled)) {
        leaveOut(leftOut, factor, blobs);
        for (const BlobLine &blobLine : linesOf(blobs)) {
            const std::optional<TextLine> line = lineOf(blobLine);
            if (line && (factor == 1 || line->letterHeight >= lowestOnHalved))
                lines.push_back(scaled(*line, factor));
        }
        factor *= 2;
    }
    return withoutCovered(highest(std::move(lines)));
}
