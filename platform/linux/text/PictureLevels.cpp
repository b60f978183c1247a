#include "platform/linux/text/PictureLevels.h"

#include <cstdint>

namespace
{

/// The mean of two pixels, channel by channel, rounded down.
constexpr std::uint32_t mean(std::uint32_t first, std::uint32_t second)
{
    return (first & second) + (((first ^ second) & 0xfefefefeU) >> 1);
}

} // namespace

QImage opaquePicture(const QImage &image)
{
    if (image.format() == QImage::Format_RGB32)
        return image;
    if (!image.hasAlphaChannel())
        return image.convertToFormat(QImage::Format_RGB32);
    // Premultiplied pixels are what is seen over black.
    QImage picture = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    picture.reinterpretAsFormat(QImage::Format_RGB32);
    return picture;
}

QImage halvedPicture(const QImage &picture)
{
    QImage half(picture.width() / 2, picture.height() / 2, QImage::Format_RGB32);
    if (half.isNull())
        return half;
    for (int y = 0; y < half.height(); ++y) {
        const auto *upper = reinterpret_cast<const std::uint32_t *>(picture.constScanLine(2 * y));
        const auto *lower =
            reinterpret_cast<const std::uint32_t *>(picture.constScanLine(2 * y + 1));
        auto *target = reinterpret_cast<std::uint32_t *>(half.scanLine(y));
        for (int x = 0; x < half.width(); ++x) {
            target[x] =
                mean(mean(upper[2 * x], lower[2 * x]), mean(upper[2 * x + 1], lower[2 * x + 1]));
        }
    }
    return half;
}
