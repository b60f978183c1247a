#include "platform/linux/text/LineGrower.h"

#include <algorithm>
#include <unordered_map>

namespace
{

/// The lowest and highest letters that are looked for on one level, in its pixels: the small
/// letters of 8 pixel text are 4 high, and twice the highest is found one level up.
constexpr int lowestBlob = 4;
constexpr int highestBlob = 48;

/// A space is a quarter to a half of the letters' height wide, in monospaced text about as wide as
/// they are high; more is a new column.
constexpr double widestGap = 1.15;

/// A letter with an ascender is about 1.4 times as high as one without, with a descender too about
/// twice: what differs more is of another line.
constexpr double greatestHeightRatio = 2.6;

/// How much of the lower one of two neighbours must stand beside the other.
constexpr double leastOverlap = 0.6;

/// A line is no higher than this in heights of its highest letter, or it would climb.
constexpr double greatestClimb = 1.5;

/// Lines are looked up by rows of this many pixels.
constexpr int bandHeight = 16;

struct GrowingLine {
    BlobLine blobs;
    QRect box;
    int highest = 0;
};

class LineGrower
{
public:
    void add(const QRect &blob)
    {
        int line = bestLine(blob);
        if (line < 0) {
            line = int(m_lines.size());
            m_lines.push_back({});
        }
        GrowingLine &grown = m_lines[std::size_t(line)];
        const int firstNew = grown.blobs.empty() ? 0 : 1;
        const QRect before = grown.box;
        grown.blobs.push_back(blob);
        grown.box |= blob;
        grown.highest = std::max(grown.highest, blob.height());
        for (int band = grown.box.top() / bandHeight; band <= grown.box.bottom() / bandHeight;
             ++band) {
            const bool known = firstNew && band >= before.top() / bandHeight &&
                               band <= before.bottom() / bandHeight;
            if (!known)
                m_bands[band].push_back(line);
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
    /// The index of the line that the blob continues best, or -1.
    int bestLine(const QRect &blob)
    {
        int best = -1;
        double bestOverlap = leastOverlap;
        for (int band = blob.top() / bandHeight; band <= blob.bottom() / bandHeight; ++band) {
            std::vector<int> &lines = m_bands[band];
            // Blobs come from left to right: what is too far to the left now stays so.
            std::erase_if(lines, [&](int line) { return ended(at(line), blob); });
            for (int line : lines) {
                const double overlap = fit(at(line), blob);
                if (overlap > bestOverlap) {
                    best = line;
                    bestOverlap = overlap;
                }
            }
        }
        return best;
    }

    static bool ended(const GrowingLine &line, const QRect &blob)
    {
        return blob.left() - line.box.right() > widestGap * highestBlob;
    }

    /// How much of the blob stands beside the line, as a share of the lower of both; 0 when the
    /// blob can't continue it.
    static double fit(const GrowingLine &line, const QRect &blob)
    {
        const double higher = std::max(line.highest, blob.height());
        const double lower = std::min(line.highest, blob.height());
        if (higher > greatestHeightRatio * lower)
            return 0;
        if (blob.left() - line.box.right() > widestGap * higher)
            return 0;
        if ((line.box | blob).height() > greatestClimb * higher)
            return 0;
        const int shared =
            std::min(line.box.bottom(), blob.bottom()) - std::max(line.box.top(), blob.top()) + 1;
        return shared / std::min<double>(line.box.height(), blob.height());
    }

    GrowingLine &at(int line) { return m_lines[std::size_t(line)]; }

    std::vector<GrowingLine> m_lines;
    std::unordered_map<int, std::vector<int>> m_bands;
};

bool mayBeLetters(const QRect &blob)
{
    return blob.height() >= lowestBlob && blob.height() <= highestBlob;
}

} // namespace

std::vector<BlobLine> growLines(std::vector<QRect> blobs)
{
    std::erase_if(blobs, [](const QRect &blob) { return !mayBeLetters(blob); });
    std::stable_sort(blobs.begin(), blobs.end(), [](const QRect &first, const QRect &second) {
        return first.left() < second.left();
    });
    LineGrower grower;
    for (const QRect &blob : blobs)
        grower.add(blob);
    return grower.take();
}
