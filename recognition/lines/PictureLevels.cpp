// SPDX-License-Identifier: MIT
#include "recognition/lines/PictureLevels.h"

#include <algorithm>
#include <memory>

namespace
{

/// The mean of two pixels, channel by channel, rounded down.
constexpr QRgb mean(QRgb first, QRgb second)
{
    return (first & second) + (((first ^ second) & 0xfefefefeU) >> 1);
}

void halve(const QRgb *upper, const QRgb *lower, QRgb *half, std::size_t width)
{
    for (std::size_t x = 0; x < width; ++x)
        half[x] = mean(mean(upper[2 * x], lower[2 * x]), mean(upper[2 * x + 1], lower[2 * x + 1]));
}

/// Takes the rows of one level and passes half as many, half as wide, to the next level.
class Level
{
public:
    Level(int width, int levels) : m_blobs(width), m_upper(std::size_t(width))
    {
        if (levels > 1 && width > 1) {
            m_next = std::make_unique<Level>(width / 2, levels - 1);
            m_half.resize(std::size_t(width / 2));
        }
    }

    void addRow(const QRgb *row)
    {
        m_blobs.addRow(row);
        if (!m_next)
            return;
        if (m_hasUpper) {
            halve(m_upper.data(), row, m_half.data(), m_half.size());
            m_next->addRow(m_half.data());
        } else {
            std::copy_n(row, m_upper.size(), m_upper.begin());
        }
        m_hasUpper = !m_hasUpper;
    }

    void collect(std::vector<std::vector<QRect>> &blobs) const
    {
        blobs.push_back(m_blobs.boxes());
        if (m_next)
            m_next->collect(blobs);
    }

private:
    StrokeBlobs m_blobs;
    std::unique_ptr<Level> m_next;
    std::vector<QRgb> m_upper;
    std::vector<QRgb> m_half;
    bool m_hasUpper = false;
};

bool isOpaque(const QImage &image)
{
    const int width = image.width();
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        QRgb common = 0xffffffffU;
        for (int x = 0; x < width; ++x)
            common &= row[x];
        if (qAlpha(common) != 0xff)
            return false;
    }
    return true;
}

/// The same pixels, declared opaque.
QImage opaqueView(const QImage &image)
{
    return QImage(
        image.constBits(), image.width(), image.height(), image.bytesPerLine(),
        QImage::Format_RGB32, [](void *kept) { delete static_cast<QImage *>(kept); },
        new QImage(image));
}

/// How many rows are processed between two checks for cancellation: some milliseconds on the widest
/// pictures.
constexpr int rowsBetweenQuestions = 128;

} // namespace

QImage opaquePicture(const QImage &image)
{
    if (image.isNull() || image.format() == QImage::Format_RGB32)
        return image;
    if (!image.hasAlphaChannel())
        return image.convertToFormat(QImage::Format_RGB32);
    // A premultiplied pixel has the colour that it shows over black.
    if (image.format() == QImage::Format_ARGB32_Premultiplied ||
        (image.format() == QImage::Format_ARGB32 && isOpaque(image)))
        return opaqueView(image);
    return opaqueView(image.convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

std::vector<std::vector<QRect>> blobsOnLevels(const QImage &picture, int levels,
                                              const std::function<bool()> &cancelled)
{
    Level first(picture.width(), levels);
    for (int y = 0; y < picture.height(); ++y) {
        if (y % rowsBetweenQuestions == 0 && cancelled())
            break;
        first.addRow(reinterpret_cast<const QRgb *>(picture.constScanLine(y)));
    }
    std::vector<std::vector<QRect>> blobs;
    first.collect(blobs);
    return blobs;
}
