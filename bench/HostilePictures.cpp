// SPDX-License-Identifier: MIT
#include "bench/HostilePictures.h"

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QtEndian>

#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include <jpeglib.h>
#include <libheif/heif.h>
#include <png.h>
#include <tiffio.h>

using namespace Qt::StringLiterals;

namespace
{

using File = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

File opened(const QString &path)
{
    return {std::fopen(QFile::encodeName(path).constData(), "wb"), &std::fclose};
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size();
}

struct PngKind {
    int width;
    int height;
    int depth;
    int colourType;
    bool isInterlaced = false;
    int texts = 0; ///< of 8 MB each when unpacked
};

/// A picture whose rows are all the same, so that it compresses to nearly nothing.
void writePng(const QString &path, const PngKind &kind)
{
    const File file = opened(path);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file.get());
    png_set_IHDR(png, info, png_uint_32(kind.width), png_uint_32(kind.height), kind.depth,
                 kind.colourType, kind.isInterlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    std::vector<png_color> palette(256, png_color{90, 120, 200});
    if (kind.colourType == PNG_COLOR_TYPE_PALETTE)
        png_set_PLTE(png, info, palette.data(), 256);
    QByteArray text(7'900'000, 'x');
    QByteArray key("Comment");
    png_text note = {};
    note.compression = PNG_TEXT_COMPRESSION_zTXt;
    note.key = key.data();
    note.text = text.data();
    note.text_length = std::size_t(text.size());
    for (int number = 0; number < kind.texts; ++number)
        png_set_text(png, info, &note, 1);
    png_set_compression_level(png, 1);
    png_write_info(png, info);
    std::vector<png_byte> row(png_get_rowbytes(png, info), 0x5a);
    const int passes = kind.isInterlaced ? png_set_interlace_handling(png) : 1;
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < kind.height; ++y)
            png_write_row(png, row.data());
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
}

/// Lines of text all the way down, as on a page captured by scrolling.
void writeText(const QString &path, QSize size, const char *format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QFont font = painter.font();
    font.setPixelSize(20);
    painter.setFont(font);
    for (int y = 60, line = 1; y < size.height(); y += 40, ++line)
        painter.drawText(40, y, u"Quarterly budget review, paragraph number %1"_s.arg(line));
    painter.end();
    image.save(path, format);
}

void writeJpeg(const QString &path, int width, int height)
{
    const File file = opened(path);
    jpeg_error_mgr errors = {};
    jpeg_compress_struct jpeg = {};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file.get());
    jpeg.image_width = JDIMENSION(width);
    jpeg.image_height = JDIMENSION(height);
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    std::vector<JSAMPLE> samples(std::size_t(width) * 3, 0x5a);
    JSAMPROW row = samples.data();
    while (jpeg.next_scanline < jpeg.image_height)
        jpeg_write_scanlines(&jpeg, &row, 1);
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
}

QByteArray progressiveJpeg(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QBuffer buffer;
    buffer.open(QBuffer::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    writer.write(image);
    return buffer.data();
}

/// The same bytes behind a header that states another size.
QByteArray claiming(QByteArray jpeg, quint16 side)
{
    const qsizetype frame = jpeg.indexOf("\xff\xc2");
    qToBigEndian(side, jpeg.data() + frame + 5);
    qToBigEndian(side, jpeg.data() + frame + 7);
    return jpeg;
}

struct TiffKind {
    int width;
    int height;
    int depth;
    int rowsPerStrip; ///< or, in a tiled file, the side of a tile
    bool isTiled = false;
};

void writeTiff(const QString &path, const TiffKind &kind)
{
    TIFF *tiff = TIFFOpen(QFile::encodeName(path).constData(), "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kind.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kind.height);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, kind.depth);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    if (kind.isTiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kind.rowsPerStrip);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, kind.rowsPerStrip);
        std::vector<char> tile(std::size_t(TIFFTileSize(tiff)), 0x5a);
        TIFFWriteEncodedTile(tiff, 0, tile.data(), tmsize_t(tile.size()));
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kind.rowsPerStrip);
        std::vector<char> row(std::size_t(TIFFScanlineSize(tiff)), 0x5a);
        for (int y = 0; y < kind.height; ++y)
            TIFFWriteScanline(tiff, row.data(), quint32(y));
    }
    TIFFClose(tiff);
}

QByteArray heic(int width, int height)
{
    heif_context *context = heif_context_alloc();
    heif_encoder *encoder = nullptr;
    heif_image *picture = nullptr;
    heif_context_get_encoder_for_format(context, heif_compression_HEVC, &encoder);
    heif_encoder_set_parameter_string(encoder, "preset", "ultrafast");
    heif_image_create(width, height, heif_colorspace_YCbCr, heif_chroma_420, &picture);
    for (const heif_channel channel : {heif_channel_Y, heif_channel_Cb, heif_channel_Cr}) {
        const int part = channel == heif_channel_Y ? 1 : 2;
        heif_image_add_plane(picture, channel, width / part, height / part, 8);
        int stride = 0;
        uint8_t *plane = heif_image_get_plane(picture, channel, &stride);
        std::fill_n(plane, std::size_t(stride) * std::size_t(height / part), uint8_t(0x5a));
    }
    heif_context_encode_image(context, picture, encoder, nullptr, nullptr);
    QByteArray bytes;
    heif_writer writer = {};
    writer.writer_api_version = 1;
    writer.write = [](heif_context *, const void *data, size_t size, void *target) {
        static_cast<QByteArray *>(target)->append(static_cast<const char *>(data), qsizetype(size));
        return heif_error{heif_error_Ok, heif_suberror_Unspecified, "Success"};
    };
    heif_context_write(context, &writer, &bytes);
    heif_encoder_release(encoder);
    heif_image_release(picture);
    heif_context_free(context);
    return bytes;
}

/// The same compressed picture in a file that claims to be small.
QByteArray sayingSmall(QByteArray file)
{
    constexpr qsizetype typeAndFlags = 8;
    for (qsizetype at = file.indexOf("ispe"); at >= 0; at = file.indexOf("ispe", at + 1)) {
        qToBigEndian<quint32>(64, file.data() + at + typeAndFlags);
        qToBigEndian<quint32>(64, file.data() + at + typeAndFlags + 4);
    }
    return file;
}

using Writer = std::function<void(const QString &path)>;

struct Picture {
    QString name;
    Writer write;
};

QList<Picture> pngPictures()
{
    const auto png = [](const PngKind &kind) {
        return [kind](const QString &path) { writePng(path, kind); };
    };
    return {
        {u"65,000 wide, 16 bit, interlaced.png"_s,
         png({65'000, 984, 16, PNG_COLOR_TYPE_RGB_ALPHA, true})},
        {u"8,000 x 8,000, 16 bit.png"_s, png({8000, 8000, 16, PNG_COLOR_TYPE_RGB_ALPHA})},
        {u"6,000 x 6,000, interlaced.png"_s, png({6000, 6000, 8, PNG_COLOR_TYPE_RGB, true})},
        {u"palette, 20,000 x 20,000.png"_s, png({20'000, 20'000, 8, PNG_COLOR_TYPE_PALETTE})},
        {u"one bit, 60,000 x 60,000.png"_s, png({60'000, 60'000, 1, PNG_COLOR_TYPE_GRAY})},
        {u"a gigabyte of texts.png"_s, png({64, 64, 8, PNG_COLOR_TYPE_RGB, false, 120})},
        {u"scrolled, 1,920 x 34,000.png"_s,
         [](const QString &path) {
             writeText(path, {1920, 34'000}, "png");
         }},
        {u"two 8K screens.png"_s,
         [](const QString &path) {
             writeText(path, {15'360, 4320}, "png");
         }},
    };
}

QList<Picture> otherPictures()
{
    const auto tiff = [](const TiffKind &kind) {
        return [kind](const QString &path) { writeTiff(path, kind); };
    };
    return {
        {u"65,000 x 6,000.jpg"_s, [](const QString &path) { writeJpeg(path, 65'000, 6000); }},
        {u"progressive, 6,000 x 4,000.jpg"_s,
         [](const QString &path) {
             writeBytes(path, progressiveJpeg({6000, 4000}));
         }},
        {u"claims 65,500 x 65,500, progressive.jpg"_s,
         [](const QString &path) {
             writeBytes(path, claiming(progressiveJpeg({640, 480}), 65'500));
         }},
        {u"20,000 x 20,000 in strips.tiff"_s, tiff({20'000, 20'000, 8, 16})},
        {u"one strip of 300 MB.tiff"_s, tiff({10'000, 10'000, 8, 10'000})},
        {u"5,000 x 5,000, 16 bit.tiff"_s, tiff({5000, 5000, 16, 64})},
        {u"one tile of 800 MB.tiff"_s, tiff({16'384, 16'384, 8, 16'384, true})},
        {u"4,000 x 4,000.heic"_s, [](const QString &path) { writeBytes(path, heic(4000, 4000)); }},
        {u"6,000 x 5,000.heic"_s, [](const QString &path) { writeBytes(path, heic(6000, 5000)); }},
        {u"4,000 x 4,000 that says 64 x 64.heic"_s,
         [](const QString &path) { writeBytes(path, sayingSmall(heic(4000, 4000))); }},
    };
}

} // namespace

QStringList HostilePictures::write(const QString &folder)
{
    QStringList paths;
    for (const Picture &picture : pngPictures() + otherPictures()) {
        paths.append(QDir(folder).filePath(picture.name));
        picture.write(paths.last());
    }
    return paths;
}
