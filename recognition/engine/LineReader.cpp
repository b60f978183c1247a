// SPDX-License-Identifier: MIT
#include "recognition/engine/LineReader.h"

#include "recognition/engine/WordFilter.h"
#include "recognition/ink/LinePicture.h"
#include "recognition/lines/LinePieces.h"

#include <QCryptographicHash>

#include <algorithm>

namespace
{

QByteArray digestOf(const QImage &ink)
{
    QCryptographicHash digest(QCryptographicHash::Sha1);
    for (int y = 0; y < ink.height(); ++y)
        digest.addData(QByteArrayView(ink.constScanLine(y), ink.width()));
    return digest.result();
}

} // namespace

LineReader::LineReader(Engine &engine, const QImage &picture) : m_engine(engine), m_picture(picture)
{
}

bool LineReader::read(const TextLine &line, const PieceHandler &onPiece,
                      const std::function<bool()> &cancelled)
{
    int read = -1; // the last column that was read
    for (QRect piece : piecesOf(line)) {
        if (cancelled())
            return false;
        // An underscore looks like a gap, but the previous piece has already read both words.
        piece.setLeft(std::max(piece.left(), read + 1));
        if (piece.isEmpty())
            continue;
        const LinePicture picture = linePicture(m_picture, piece, line, read + 1);
        if (picture.ink.isNull())
            continue;
        read = picture.area.right();
        const QString text = readPicture(picture.ink);
        if (!text.isEmpty() && !onPiece(text))
            return false;
    }
    return true;
}

QString LineReader::readPicture(const QImage &ink)
{
    // A label that occurs many times on a page is read once.
    const QByteArray digest = digestOf(ink);
    const auto known = m_texts.constFind(digest);
    if (known != m_texts.cend())
        return *known;
    QStringList words;
    for (const ReadWord &word : m_engine.read(ink)) {
        if (isRealWord(word))
            words.append(word.text);
    }
    return *m_texts.insert(digest, words.join(QLatin1Char(' ')));
}
