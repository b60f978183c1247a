// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>

/// A page on which a test draws text, rules, icons and textures.
class DrawnPage
{
public:
    explicit DrawnPage(QSize size, QColor ground = Qt::white);

    DrawnPage &ink(QColor colour);
    DrawnPage &font(const QString &family, int pixels);

    /// Draws the text with its base line at `base`; returns the rectangle of its letters.
    QRect text(QPoint base, const QString &text);

    /// A box of lines one pixel wide.
    void box(const QRect &area);

    /// A texture like that of a photograph: smooth random spots in many sizes and colours.
    void texture(const QRect &area, unsigned seed);

    /// An icon, rotated by some degrees: strokes and a circle within a square.
    void icon(const QRect &area, int degrees);

    const QImage &image() const { return m_image; }

private:
    QImage m_image;
    QColor m_ink = Qt::black;
    QFont m_font;
};
