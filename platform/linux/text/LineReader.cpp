#include "platform/linux/text/LineReader.h"

#include "platform/linux/text/JunkFilter.h"
#include "platform/linux/text/LinePicture.h"
#include "platform/linux/text/LinePieces.h"

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
    QStringList words;
    for (const ReadWord &word : m_engine.read(linePicture(m_picture, area, letterHeight))) {
        if (isRealWord(word))
            words.append(word.text);
    }
    return words.join(QLatin1Char(' '));
}
