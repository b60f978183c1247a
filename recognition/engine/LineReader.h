// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/engine/Engine.h"
#include "recognition/lines/TextLine.h"

#include <QHash>
#include <QImage>

#include <functional>

/// Reads lines piece by piece with one engine.
class LineReader
{
public:
    /// Receives the words of one piece, joined by spaces; returns whether more is wanted.
    using PieceHandler = std::function<bool(const QString &text)>;

    /// `picture` is the result of `opaquePicture`. Both must outlive the reader.
    LineReader(Engine &engine, const QImage &picture);

    /// Passes the line's words to `onPiece`, from left to right. Returns whether more is wanted.
    bool read(const TextLine &line, const PieceHandler &onPiece,
              const std::function<bool()> &cancelled);

private:
    QString readPicture(const QImage &ink);

    Engine &m_engine;
    const QImage &m_picture;
    QHash<QByteArray, QString> m_texts; ///< by the digest of the piece's picture
};
