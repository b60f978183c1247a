// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/engine/EnginePool.h"

#include <QImage>
#include <QList>
#include <QRect>
#include <QString>

#include <functional>

/// Reads the text in a picture, line by line, in reading order. Lines are found over the whole
/// picture first, which takes some milliseconds, and then read one by one, which takes nearly all
/// the time. Any thread, several at once.
class PageReader
{
public:
    /// Receives the text of one line, or of the next piece of a long line; a piece ends where a
    /// word ends. Returns whether more is wanted.
    using LineHandler = std::function<bool(const QString &text)>;

    /// Called often, on the reading thread; returning true ends the work within some tens of
    /// milliseconds.
    using Cancelled = std::function<bool()>;

    PageReader();

    /// Blocks for the length of the work. Never fails: a picture without text, a missing model or
    /// an engine failure gives no lines.
    ///
    /// @param leftOut areas of the image that are not read
    void read(const QImage &image, const QList<QRect> &leftOut, const LineHandler &onLine,
              const Cancelled &cancelled);

    /// Prepares an engine, so that the first picture is read as fast as the tenth. Blocks; further
    /// calls cost nothing.
    void warmUp();

private:
    EnginePool m_engines;
};
