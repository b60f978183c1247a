// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>

/// Reads the text in a picture, on this machine only. Lines come one by one, in reading order, so
/// that a caller can stop as soon as it has enough words.
///
/// Any thread, several at once; blocks for the length of the work. Never fails: a picture without
/// text, a missing model or an engine failure gives no lines.
class TextRecognizer
{
public:
    /// Receives the best reading of one line, or of the next piece of a long line; a piece ends
    /// where a word ends. Returns whether more is wanted.
    using LineHandler = std::function<bool(const QString &text)>;

    /// Called often, on the recognising thread; returning true ends the work within some tens of
    /// milliseconds.
    using Cancelled = std::function<bool()>;

    /// A picture, and the areas in it that are not to be read.
    struct Page {
        Page(const QImage &picture, const QList<QRect> &blindAreas = {}) // NOLINT: it is a picture
            : image(picture), leftOut(blindAreas)
        {
        }

        QImage image;
        QList<QRect> leftOut; ///< in the image's pixels
    };

    virtual ~TextRecognizer() = default;

    virtual void recognize(const Page &page, const LineHandler &onLine,
                           const Cancelled &cancelled) = 0;

    /// Prepares an engine, so that the first picture is read as fast as the tenth. Any thread;
    /// blocks; further calls cost nothing.
    virtual void warmUp() = 0;
};

std::unique_ptr<TextRecognizer> makeTextRecognizer();
