#include "platform/linux/text/LineReader.h"

#include "platform/linux/text/JunkFilter.h"
#include "platform/linux/text/LinePicture.h"
#include "platform/linux/text/LinePieces.h"

#include <cmath>

namespace
{

/// The engine sees this much of the picture around the letters, in their heights: accents above,
/// commas below.
constexpr double reachAbove = 0.3;
constexpr double reachBelow = 0.15;

} // namespace

LineReader::LineReader(Engine &engine, const QImage &picture) : m_engine(engine), m_picture(picture)
{
}

bool LineReader::read(const TextLine &line, const PieceHandler &onPiece,
                      const std::function<bool()> &cancelled)
{
    for (const QRect &piece : piecesOf(line)) {
        if (cancelled())
            return false;
        const QString text = readPiece(piece, line.letterHeight);
        if (!text.isEmpty() && !onPiece(text))
            return false;
    }
    return true;
}

QString LineReader::readPiece(const QRect &area, int letterHeight)
{
    const auto above = int(std::lround(reachAbove * letterHeight));
    const auto below = int(std::lround(reachBelow * letterHeight));
    const QRect seen = area.adjusted(-1, -above, 1, below);
    QStringList words;
    for (const ReadWord &word : m_engine.read(linePicture(m_picture, seen, letterHeight))) {
        if (isRealWord(word))
            words.append(word.text);
    }
    return words.join(QLatin1Char(' '));
}
