#include "recognition/PageReader.h"

#include "core/releaseFreeMemory.h"
#include "recognition/engine/LineReader.h"
#include "recognition/engine/LocaleModels.h"
#include "recognition/lines/LineFinder.h"
#include "recognition/lines/PictureLevels.h"
#include "recognition/order/ReadingOrder.h"

#include <algorithm>
#include <iterator>

namespace
{

/// After so many lines without a word, the rest is taken for a texture; most of them cost a tenth
/// of a millisecond.
constexpr int maximumBarrenLines = 400;

/// Of the lines that hold no words, so many at most are asked for the lines that they cover.
constexpr int maximumReorderings = 16;

/// Adds lines to those of which the first ones, up to `next`, have been read. These stay the first;
/// the others are ordered anew, as parts of the whole.
void insertInOrder(const std::vector<TextLine> &added, std::vector<TextLine> &lines,
                   std::size_t next)
{
    std::vector<QRect> read;
    std::transform(lines.begin(), lines.begin() + std::ptrdiff_t(next), std::back_inserter(read),
                   [](const TextLine &line) { return line.box; });
    lines.insert(lines.end(), added.begin(), added.end());
    lines = inReadingOrder(std::move(lines));
    std::stable_partition(lines.begin(), lines.end(), [&](const TextLine &line) {
        return std::find(read.begin(), read.end(), line.box) != read.end();
    });
}

/// Reads lines in their order, until enough is read or no more is to be expected.
void readAll(std::vector<TextLine> lines, LineReader &reader, const PageReader::LineHandler &onLine,
             const PageReader::Cancelled &cancelled)
{
    int barren = 0;
    int reorderings = 0;
    const auto onPiece = [&](const QString &text) {
        barren = 0;
        return onLine(text);
    };
    lines = inReadingOrder(std::move(lines));
    for (std::size_t next = 0; next < lines.size();) {
        TextLine &line = lines[next++];
        ++barren;
        if (!reader.read(line, onPiece, cancelled) || barren > maximumBarrenLines)
            return;
        const std::vector<TextLine> covered = std::move(line.covered);
        if (barren > 0 && !covered.empty() && ++reorderings <= maximumReorderings)
            insertInOrder(covered, lines, next);
    }
}

} // namespace

PageReader::PageReader() : m_engines(localeModels(QLocale::system()))
{
    keepLittleFreeMemory();
}

void PageReader::read(const QImage &image, const LineHandler &onLine, const Cancelled &cancelled)
{
    const QImage picture = opaquePicture(image);
    if (picture.isNull())
        return;
    std::vector<TextLine> lines = findLines(picture, cancelled);
    const EnginePool::Lease engine = m_engines.take();
    LineReader reader(*engine, picture);
    readAll(std::move(lines), reader, onLine, cancelled);
}

void PageReader::warmUp()
{
    m_engines.take();
}
