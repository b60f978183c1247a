// SPDX-License-Identifier: MIT
#include "tests/imaging/TestPictures.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QPainter>
#include <QRandomGenerator>
#include <QtEndian>

#include <libheif/heif.h>

#include <array>
#include <cstring>

using namespace Qt::StringLiterals;

namespace
{

constexpr int colourTolerance = 40;

QByteArray heic(const QImage &image, heif_orientation orientation)
{
    const QImage pixels = image.convertToFormat(QImage::Format_RGB888);
    heif_context *context = heif_context_alloc();
    heif_encoder *encoder = nullptr;
    heif_image *picture = nullptr;
    heif_context_get_encoder_for_format(context, heif_compression_HEVC, &encoder);
    heif_image_create(pixels.width(), pixels.height(), heif_colorspace_RGB,
                      heif_chroma_interleaved_RGB, &picture);
    heif_image_add_plane(picture, heif_channel_interleaved, pixels.width(), pixels.height(), 8);
    int stride = 0;
    uchar *plane = heif_image_get_plane(picture, heif_channel_interleaved, &stride);
    for (int y = 0; y < pixels.height(); ++y)
        std::memcpy(plane + qsizetype(y) * stride, pixels.constScanLine(y),
                    size_t(pixels.width()) * 3);
    QByteArray bytes;
    if (encoder) {
        heif_encoder_set_lossy_quality(encoder, 90);
        heif_encoding_options *options = heif_encoding_options_alloc();
        options->image_orientation = orientation;
        heif_context_encode_image(context, picture, encoder, options, nullptr);
        heif_encoding_options_free(options);
        heif_writer writer = {};
        writer.writer_api_version = 1;
        writer.write = [](heif_context *, const void *data, size_t size, void *target) {
            static_cast<QByteArray *>(target)->append(static_cast<const char *>(data),
                                                      qsizetype(size));
            return heif_error{heif_error_Ok, heif_suberror_Unspecified, "Success"};
        };
        heif_context_write(context, &writer, &bytes);
        heif_encoder_release(encoder);
    }
    heif_image_release(picture);
    heif_context_free(context);
    return bytes;
}

QByteArray byQt(const QImage &image, const QString &format,
                QImageIOHandler::Transformations transformation)
{
    QBuffer buffer;
    buffer.open(QBuffer::WriteOnly);
    QImageWriter writer(&buffer, format.toLatin1());
    if (format == "jpeg"_L1 || format == "webp"_L1)
        writer.setQuality(90);
    writer.setTransformation(transformation);
    return writer.write(image) ? buffer.data() : QByteArray();
}

quint32 crc32(const QByteArray &bytes)
{
    quint32 crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? (crc >> 1) ^ 0xEDB88320 : crc >> 1;
    }
    return ~crc;
}

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

} // namespace

namespace TestPictures
{

QImage fourFields(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    const int x = size.width() / 2;
    const int y = size.height() / 2;
    QPainter painter(&image);
    painter.fillRect(0, 0, x, y, Qt::red);
    painter.fillRect(x, 0, size.width() - x, y, Qt::green);
    painter.fillRect(0, y, x, size.height() - y, Qt::blue);
    painter.fillRect(x, y, size.width() - x, size.height() - y, Qt::white);
    return image;
}

QImage noise(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, 0xFF000000 | random.generate());
    }
    return image;
}

QByteArray encoded(const QImage &image, const QString &format)
{
    if (format == "heic"_L1)
        return heic(image, heif_orientation_normal);
    return byQt(image, format, QImageIOHandler::TransformationNone);
}

QByteArray encodedLying(const QImage &image, const QString &format)
{
    const QImage lying = image.transformed(QTransform().rotate(-90));
    if (format == "heic"_L1)
        return heic(lying, heif_orientation_rotate_90_cw);
    return byQt(lying, format, QImageIOHandler::TransformationRotate90);
}

QByteArray pngChunk(const QByteArray &type, const QByteArray &data)
{
    return bigEndian(quint32(data.size())) + type + data + bigEndian(crc32(type + data));
}

QByteArray pngHeader(quint32 width, quint32 height, const QByteArray &kind)
{
    return pngChunk("IHDR", bigEndian(width) + bigEndian(height) + kind);
}

QByteArray pngData(const QByteArray &rows)
{
    // The first four bytes of qCompress() are Qt's own.
    return pngChunk("IDAT", qCompress(rows).mid(4));
}

QByteArray pngFile(const QByteArray &chunks)
{
    return QByteArray("\x89PNG\r\n\x1A\n", 8) + chunks + pngChunk("IEND", {});
}

QByteArray pngThatClaims(quint32 width, quint32 height)
{
    return pngFile(pngHeader(width, height, QByteArray("\x08\x06\0\0\0", 5)) +
                   pngData(QByteArray(64, '\0')));
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size();
}

bool lookAlike(const QImage &one, const QImage &other)
{
    if (one.isNull() || one.size() != other.size())
        return false;
    constexpr int steps = 8;
    for (int row = 1; row < steps; row += 2) {
        for (int column = 1; column < steps; column += 2) {
            const QPoint point(one.width() * column / steps, one.height() * row / steps);
            const QColor a = one.pixelColor(point);
            const QColor b = other.pixelColor(point);
            if (qAbs(a.red() - b.red()) > colourTolerance ||
                qAbs(a.green() - b.green()) > colourTolerance ||
                qAbs(a.blue() - b.blue()) > colourTolerance)
                return false;
        }
    }
    return true;
}

} // namespace TestPictures
