// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TextRecognizer.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QStringList>

#include <memory>

using namespace Qt::StringLiterals;

/// The recogniser, and simple pictures to read.
class TextRecognizerFixture
{
protected:
    void begin() { m_recognizer = makeTextRecognizer(); }

    /// Where the lines of text begin.
    static constexpr int leftMargin = 60;

    /// A picture of lines of text, one below the other.
    static QImage pictureOf(const QStringList &lines, QColor ink = Qt::black,
                            QColor ground = Qt::white, int pixels = 16)
    {
        QImage picture(640, 40 + 3 * pixels * int(lines.size()), QImage::Format_RGB32);
        picture.fill(ground);
        QPainter painter(&picture);
        QFont font(u"DejaVu Sans"_s);
        font.setPixelSize(pixels);
        painter.setFont(font);
        painter.setPen(ink);
        for (int index = 0; index < lines.size(); ++index)
            painter.drawText(leftMargin, 20 + pixels + 3 * pixels * index, lines[index]);
        return picture;
    }

    QString textOf(const QImage &picture) const
    {
        QStringList pieces;
        m_recognizer->recognize(
            picture,
            [&](const QString &text) {
                pieces.append(text);
                return true;
            },
            [] { return false; });
        return pieces.join(u' ');
    }

    std::unique_ptr<TextRecognizer> m_recognizer;
};
