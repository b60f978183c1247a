// SPDX-License-Identifier: MIT
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

/// After this many lines without a word, the rest is considered a texture. Most such lines cost a
/// tenth of a millisecond.
constexpr int maximumBarrenLines = 400;

/// At most this many lines without words are replaced by the lines that they cover.
constexpr int maximumReorderings = 16;

/// Adds `added` lines to `lines`, of which those before `next` have been read. These stay first;
/// the others, with the added ones, are put into reading order again.
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

/// Reads lines in order, until enough has been read or no more text is to be expected.
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

void PageReader::read(const QImage &image, const QList<QRect> &leftOut, const LineHandler &onLine,
                      const Cancelled &cancelled)
{
    const QImage picture = opaquePicture(image);
    if (picture.isNull())
        return;
    std::vector<TextLine> lines = findLines(picture, cancelled, leftOut);
    const EnginePool::Lease engine = m_engines.take();
    LineReader reader(*engine, picture);
    readAll(std::move(lines), reader, onLine, cancelled);
}

void PageReader::warmUp()
{
    m_engines.warmUp();
}
