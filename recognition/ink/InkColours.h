// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRect>

#include <vector>

/// The colours of the letters in an area and of the background. Either may be the lighter one, and
/// both may be equally bright.
class InkColours
{
public:
    /// `area` is in `picture` (the result of `opaquePicture`) and is not empty.
    InkColours(const QImage &picture, const QRect &area);

    /// How far the pixel is from the ground in the direction of the ink, in steps of a channel;
    /// negative in the opposite direction.
    float depth(QRgb pixel) const
    {
        return (float(qRed(pixel)) - m_ground.red) * m_direction.red +
               (float(qGreen(pixel)) - m_ground.green) * m_direction.green +
               (float(qBlue(pixel)) - m_ground.blue) * m_direction.blue;
    }

    /// The depth that counts as full ink; few pixels are deeper.
    float inkDepth() const { return m_inkDepth; }

private:
    /// A colour, or the difference of two.
    struct Colour {
        float red = 0;
        float green = 0;
        float blue = 0;
    };

    static std::vector<QRgb> pixelsOf(const QImage &picture, const QRect &area);
    static Colour groundOf(const std::vector<QRgb> &pixels);
    static Colour directionOf(const std::vector<QRgb> &pixels, const Colour &ground);

    Colour m_ground;
    Colour m_direction;
    float m_inkDepth = 0;
};
