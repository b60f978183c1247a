#include "platform/linux/text/LineReader.h"

#include "platform/linux/text/JunkFilter.h"
#include "platform/linux/text/LinePicture.h"
#include "platform/linux/text/LinePieces.h"

#include <QCryptographicHash>

namespace
{

QByteArray digestOf(const QImage &line)
{
    QCryptographicHash digest(QCryptographicHash::Sha1);
    for (int y = 0; y < line.height(); ++y)
        digest.addData(QByteArrayView(line.constScanLine(y), line.width()));
    return digest.result();
}

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
    const QImage line = linePicture(m_picture, area, letterHeight);
    if (line.isNull())
        return {};
    // A label that stands on a page many times is read once.
    const QByteArray digest = digestOf(line);
    const auto known = m_texts.constFind(digest);
    if (known != m_texts.cend())
        return *known;
    QStringList words;
    for (const ReadWord &word : m_engine.read(line)) {
        if (isRealWord(word))
            words.append(word.text);
    }
    return *m_texts.insert(digest, words.join(QLatin1Char(' ')));
}
