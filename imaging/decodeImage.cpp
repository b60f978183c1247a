#include "imaging/decodeImage.h"

#include "filesystem/OpenFile.h"
#include "imaging/decodeHeic.h"
#include "imaging/decodePng.h"
#include "imaging/jpegEnd.h"
#include "imaging/pictureMemory.h"

#include <QBuffer>
#include <QImageReader>

#include <string_view>

namespace
{

constexpr qint64 signatureBytes = 64;

/// Pixels of 64 bits, while they are decoded.
constexpr int allocationLimitMegabytes = int(maximumDecodedPixels * 8 / 1'000'000);

using namespace std::string_view_literals;

/// The name under which Qt knows the format; nullptr for what has no unmistakable beginning.
const char *qtFormat(const QByteArray &beginning)
{
    const std::string_view content(beginning.constData(), size_t(beginning.size()));
    if (content.starts_with("\x89PNG\r\n\x1A\n"sv))
        return "png";
    if (content.starts_with("\xFF\xD8\xFF"sv))
        return "jpeg";
    if (content.starts_with("II*\0"sv) || content.starts_with("MM\0*"sv) ||
        content.starts_with("II+\0"sv) || content.starts_with("MM\0+"sv))
        return "tiff";
    if (content.starts_with("RIFF"sv) && content.substr(0, 12).ends_with("WEBP"sv))
        return "webp";
    return nullptr;
}

/// A picture in memory of ours, which is cheaper to fill; null where that is not to be had.
QImage pictureToFill(QSize size, QImage::Format format)
{
    if (format != QImage::Format_RGB32 && format != QImage::Format_ARGB32)
        return {};
    const auto memory = allocatePictureMemory(std::size_t(4) * std::size_t(size.width()) *
                                              std::size_t(size.height()));
    return memory ? pictureIn(memory, size, format) : QImage();
}

QImage decodeWithQt(const QByteArray &bytes, const char *format)
{
    // The limit is the process's; the pixels are counted below because not every format heeds it.
    static const bool limited = [] {
        QImageReader::setAllocationLimit(allocationLimitMegabytes);
        return true;
    }();
    Q_UNUSED(limited)
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() > maximumDecodedPixels)
        return {};
    // The format's reader takes this one where it has the size and format that it needs.
    QImage picture = pictureToFill(size, reader.imageFormat());
    return reader.read(&picture) ? picture : QImage();
}

/// Everybody down the road works with 8 bits a channel.
QImage withoutDeepChannels(QImage image)
{
    if (image.depth() <= 32)
        return image;
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32
                                                         : QImage::Format_RGB32);
}

} // namespace

QImage decodeImage(const QUrl &file)
{
    const std::shared_ptr<OpenFile> open = OpenFile::open(file.toLocalFile());
    return open ? decodeImage(open->descriptor()) : QImage();
}

QImage decodeImage(int descriptor)
{
    // What is no picture is not read any further, however large it is.
    const QByteArray beginning = readBeginning(descriptor, signatureBytes);
    if (!qtFormat(beginning) && !isHeic(beginning))
        return {};
    const std::optional<QByteArray> bytes = readWhole(descriptor, maximumPictureFileSize);
    return bytes ? decodeImage(*bytes) : QImage();
}

QImage decodeImage(const QByteArray &bytes)
{
    if (const char *format = qtFormat(bytes)) {
        if (qstrcmp(format, "jpeg") == 0 && !reachesJpegEnd(bytes))
            return {};
        if (qstrcmp(format, "png") == 0) {
            const QImage picture = decodePlainPng(bytes, maximumDecodedPixels);
            if (!picture.isNull())
                return picture;
        }
        return withoutDeepChannels(decodeWithQt(bytes, format));
    }
    return isHeic(bytes.left(signatureBytes)) ? decodeHeic(bytes, maximumDecodedPixels) : QImage();
}
