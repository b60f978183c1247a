#include "platform/linux/text/LineFinder.h"

#include "platform/linux/text/LineGrower.h"
#include "platform/linux/text/PictureLevels.h"
#include "platform/linux/text/StrokeBlobs.h"

#include <algorithm>
#include <optional>

namespace
{

/// The picture itself, its half and its quarter: letters of 4 to 48 pixels on the first are up to
/// 192 pixels high on the last.
constexpr int levels = 3;

/// Letters on the halved levels are at least this high, in their pixels; smaller ones are found
/// better one level below.
constexpr int lowestOnHalved = 18;

/// A gap between words, in heights of a letter: the gaps inside words are below a third, also in
/// monospaced text.
constexpr double wordGap = 0.42;

/// Three letters, the fewest that make a word of a name, are no narrower than their height.
constexpr double narrowestLine = 1.0;

/// Blobs that end on the line's base, or start at its top, within this share of a letter's height.
constexpr double evenness = 0.15;

/// A line found on a coarser level gives way when this share of it is known already.
constexpr double knownShare = 0.4;

int middleOf(std::vector<int> values, double share)
{
    const auto place = values.begin() + std::ptrdiff_t(double(values.size() - 1) * share);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

/// The blobs' words: runs between gaps of a word's gap or more.
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

std::optional<TextLine> lineOf(const BlobLine &blobs)
{
    std::vector<int> tops;
    std::vector<int> bottoms;
    for (const QRect &blob : blobs) {
        tops.push_back(blob.top());
        bottoms.push_back(blob.bottom());
    }
    TextLine line;
    line.letterHeight = std::max(1, middleOf(bottoms, 0.5) - middleOf(tops, 0.25) + 1);
    for (const QRect &blob : blobs)
        line.box |= blob;
    if (line.box.width() < narrowestLine * line.letterHeight)
        return std::nullopt;
    line.words = wordsOf(blobs, line.letterHeight);
    return line;
}

QRect scaled(const QRect &box, int factor)
{
    return {box.x() * factor, box.y() * factor, box.width() * factor, box.height() * factor};
}

TextLine scaled(TextLine line, int factor)
{
    line.box = scaled(line.box, factor);
    line.letterHeight *= factor;
    for (QRect &word : line.words)
        word = scaled(word, factor);
    return line;
}

bool isKnown(const TextLine &line, const std::vector<TextLine> &lines)
{
    qint64 known = 0;
    for (const TextLine &other : lines) {
        const QRect shared = other.box & line.box;
        known += qint64(shared.width()) * shared.height();
    }
    return double(known) > knownShare * line.box.width() * line.box.height();
}

} // namespace

std::vector<TextLine> findLines(const QImage &picture, const std::function<bool()> &cancelled)
{
    std::vector<TextLine> lines;
    QImage level = picture;
    for (int index = 0; index < levels && !level.isNull() && !cancelled(); ++index) {
        const std::size_t finer = lines.size();
        for (const BlobLine &blobs : growLines(findStrokeBlobs(level))) {
            const std::optional<TextLine> line = lineOf(blobs);
            if (!line || (index > 0 && line->letterHeight < lowestOnHalved))
                continue;
            const TextLine found = scaled(*line, 1 << index);
            if (index == 0 ||
                !isKnown(found, {lines.begin(), lines.begin() + std::ptrdiff_t(finer)}))
                lines.push_back(found);
        }
        level = halvedPicture(level);
    }
    return lines;
}
