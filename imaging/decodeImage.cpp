// SPDX-License-Identifier: MIT
#include "imaging/decodeImage.h"

#include "filesystem/OpenFile.h"
#include "imaging/DescriptorDevice.h"
#include "imaging/PictureSink.h"
#include "imaging/decodeHeic.h"
#include "imaging/decodeJpeg.h"
#include "imaging/decodePng.h"
#include "imaging/decodeTiff.h"
#include "imaging/decodeWebp.h"

#include <QBuffer>
#include <QImageReader>

#include <string_view>

namespace
{

using namespace std::string_view_literals;
using Transformations = QImageIOHandler::Transformations;

constexpr qint64 signatureBytes = 64;

/// A JPEG file states its orientation within these.
constexpr qint64 headerBytes = 256 * qint64(1024);

enum class Format { None, Png, Jpeg, Tiff, Webp, Heic };

Format formatOf(const QByteArray &beginning)
{
    const std::string_view content(beginning.constData(), size_t(beginning.size()));
    if (content.starts_with("\x89PNG\r\n\x1A\n"sv))
        return Format::Png;
    if (content.starts_with("\xFF\xD8\xFF"sv))
        return Format::Jpeg;
    if (content.starts_with("II*\0"sv) || content.starts_with("MM\0*"sv) ||
        content.starts_with("II+\0"sv) || content.starts_with("MM\0+"sv))
        return Format::Tiff;
    if (content.starts_with("RIFF"sv) && content.substr(0, 12).ends_with("WEBP"sv))
        return Format::Webp;
    return isHeic(beginning) ? Format::Heic : Format::None;
}

Transformations uprightJpeg(QIODevice &file)
{
    QByteArray header = file.read(headerBytes);
    file.seek(0);
    QBuffer buffer(&header);
    QImageReader reader(&buffer, "jpeg");
    return reader.transformation();
}

/// What turns the picture upright; nothing when there is no picture.
std::optional<Transformations> decodeInto(PictureSink &sink, QIODevice &file)
{
    const auto asItIs = [](bool done) {
        return done ? std::optional(Transformations()) : std::nullopt;
    };
    const QByteArray beginning = file.read(signatureBytes);
    file.seek(0);
    const Format format = formatOf(beginning);
    const bool isHeld = format == Format::Heic || format == Format::Webp;
    if (isHeld && file.size() > maximumHeldFileSize)
        return std::nullopt;
    switch (format) {
    case Format::Png:
        return asItIs(decodePng(file, sink));
    case Format::Jpeg: {
        const Transformations turns = uprightJpeg(file);
        const bool isTurned = turns != QImageIOHandler::TransformationNone;
        return decodeJpeg(file, isTurned, sink) ? std::optional(turns) : std::nullopt;
    }
    case Format::Tiff:
        return decodeTiff(file, sink);
    case Format::Webp:
        return asItIs(decodeWebp(file, sink));
    case Format::Heic:
        return asItIs(decodeHeic(file, sink));
    case Format::None:
        break;
    }
    return std::nullopt;
}

Decoding decode(QIODevice &file, const PictureLimits &limits,
                const std::shared_ptr<PictureBudget> &budget)
{
    if (file.size() > maximumPictureFileSize)
        return {};
    PictureSink sink(limits, budget);
    const std::optional<Transformations> turns = decodeInto(sink, file);
    if (!turns)
        return {{}, sink.lackingBytes()};
    return {sink.takePicture(*turns), 0};
}

QImage decodeForPasting(QIODevice &file)
{
    constexpr PictureLimits whole{0, maximumPastedPixels};
    const auto budget = std::make_shared<PictureBudget>(PictureBudget::ofPasting);
    return decode(file, whole, budget).picture.overview;
}

} // namespace

Decoding decodePicture(int descriptor, const std::shared_ptr<PictureBudget> &budget,
                       const PictureLimits &limits)
{
    DescriptorDevice file(descriptor);
    return decode(file, limits, budget);
}

QImage decodeImage(const QUrl &file)
{
    const std::shared_ptr<OpenFile> open = OpenFile::open(file.toLocalFile());
    return open ? decodeImage(open->descriptor()) : QImage();
}

QImage decodeImage(int descriptor)
{
    DescriptorDevice file(descriptor);
    return decodeForPasting(file);
}

QImage decodeImage(const QByteArray &bytes)
{
    QBuffer file;
    file.setData(bytes);
    file.open(QBuffer::ReadOnly);
    return decodeForPasting(file);
}
