// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>

/// Reads the text in a picture, on this machine only. Lines come one by one, in reading order, so
/// that a caller who has enough words can stop early.
///
/// Any thread, several at once; blocks for the length of the work. Never fails: a picture without
/// text, a missing model or an engine's failure give no lines.
class TextRecognizer
{
public:
    /// Takes the best reading of one line, or of the next piece of a long line; a piece ends where
    /// a word ends. Returns whether more is wanted.
    using LineHandler = std::function<bool(const QString &text)>;

    /// Asked often, from the recognising thread: true ends the work within some tens of
    /// milliseconds.
    using Cancelled = std::function<bool()>;

    /// A picture, and where in it nothing is to be read.
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

    /// Makes an engine ready, so that the first picture is read as fast as the tenth. Any thread;
    /// blocks; calling it again costs nothing.
    virtual void warmUp() = 0;
};

std::unique_ptr<TextRecognizer> makeTextRecognizer();
