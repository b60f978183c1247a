// SPDX-License-Identifier: MIT
#include "imaging/decodeTiff.h"

#include "imaging/PictureSink.h"

#include <QIODevice>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <memory>
#include <vector>

#include <tiffio.h>

namespace
{

using Transformations = QImageIOHandler::Transformations;

/// The library refuses larger single allocations.
constexpr tmsize_t largestAllocation = 100'000'000;

/// The bytes of pixels that are read at a time; at least one strip or one row of tiles.
constexpr qint64 bandBytes = 4'000'000;

QIODevice &deviceOf(thandle_t handle)
{
    return *static_cast<QIODevice *>(handle);
}

tmsize_t readBytes(thandle_t file, void *to, tmsize_t size)
{
    return tmsize_t(deviceOf(file).read(static_cast<char *>(to), qint64(size)));
}

tmsize_t writeNothing(thandle_t, void *, tmsize_t)
{
    return 0;
}

toff_t seek(thandle_t handle, toff_t offset, int whence)
{
    QIODevice &file = deviceOf(handle);
    const qint64 origin = whence == SEEK_CUR ? file.pos() : whence == SEEK_END ? file.size() : 0;
    return file.seek(origin + qint64(offset)) ? toff_t(file.pos()) : toff_t(-1);
}

int leaveOpen(thandle_t)
{
    return 0;
}

toff_t sizeOf(thandle_t file)
{
    return toff_t(deviceOf(file).size());
}

/// Counts as handled, so that nothing goes to the console.
int handled(TIFF *, void *, const char *, const char *, va_list)
{
    return 1;
}

struct Close {
    void operator()(TIFF *tiff) const { TIFFClose(tiff); }
};

std::unique_ptr<TIFF, Close> opened(QIODevice &file)
{
    const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(
        TIFFOpenOptionsAlloc(), &TIFFOpenOptionsFree);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), largestAllocation);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), handled, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), handled, nullptr);
    // Read only, and not mapped into memory: the file may become shorter.
    return std::unique_ptr<TIFF, Close>(TIFFClientOpenExt("", "rm", &file, readBytes, writeNothing,
                                                          seek, leaveOpen, sizeOf, nullptr, nullptr,
                                                          options.get()));
}

/// How the library turns stored samples into pixels.
struct Conversion {
    explicit Conversion(TIFF *tiff)
    {
        std::array<char, 1024> message = {};
        isReady = TIFFRGBAImageOK(tiff, message.data()) != 0 &&
                  TIFFRGBAImageBegin(&image, tiff, 1, message.data()) != 0;
        // Rows come as stored; the picture is turned as a whole.
        image.orientation = ORIENTATION_TOPLEFT;
        image.req_orientation = ORIENTATION_TOPLEFT;
    }
    ~Conversion()
    {
        if (isReady)
            TIFFRGBAImageEnd(&image);
    }
    Q_DISABLE_COPY_MOVE(Conversion)

    TIFFRGBAImage image = {};
    bool isReady;
};

/// The rows that are stored together.
qint64 rowsTogether(TIFF *tiff, qint64 height)
{
    quint32 rows = 0;
    TIFFGetFieldDefaulted(tiff, TIFFIsTiled(tiff) != 0 ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP,
                          &rows);
    return std::clamp<qint64>(rows, 1, height);
}

/// A strip or a tile, both stored and unpacked; one for each channel when they are stored apart.
qint64 unpackingBytes(TIFF *tiff, const TIFFRGBAImage &image, qint64 fileSize)
{
    const qint64 unpacked = TIFFIsTiled(tiff) != 0 ? TIFFTileSize(tiff) : TIFFStripSize(tiff);
    const qint64 channels = image.isContig != 0 ? 1 : image.samplesperpixel;
    const quint32 count =
        TIFFIsTiled(tiff) != 0 ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
    quint64 stored = 0;
    for (quint32 number = 0; number < count; ++number)
        stored = std::max<quint64>(stored, TIFFGetStrileByteCount(tiff, number));
    return std::max<qint64>(0, unpacked) * channels +
           std::min(fileSize, qint64(std::min<quint64>(stored, quint64(fileSize))));
}

void copyRow(const quint32 *from, QRgb *to, quint32 width)
{
    for (quint32 x = 0; x < width; ++x)
        to[x] = qRgba(int(TIFFGetR(from[x])), int(TIFFGetG(from[x])), int(TIFFGetB(from[x])),
                      int(TIFFGetA(from[x])));
}

bool readRows(TIFF *tiff, TIFFRGBAImage &image, qint64 fileSize, bool isTurned, PictureSink &sink)
{
    const qint64 width = image.width;
    const qint64 height = image.height;
    if (width <= 0 || height <= 0 || width * height > PictureSink::maximumPixels)
        return false;
    const qint64 together = rowsTogether(tiff, height);
    const qint64 bandsTogether = std::max<qint64>(1, bandBytes / (4 * width) / together);
    const qint64 bandRows = std::min(height, together * bandsTogether);
    if (!sink.begin({{int(width), int(height)},
                     PictureSink::Alpha::Premultiplied,
                     PictureSink::Order::Downwards,
                     isTurned},
                    4 * width * bandRows + unpackingBytes(tiff, image, fileSize)))
        return false;
    std::vector<quint32> band(std::size_t(width * bandRows));
    for (qint64 y = 0; y < height; y += bandRows) {
        const qint64 rows = std::min(bandRows, height - y);
        image.row_offset = int(y);
        if (TIFFRGBAImageGet(&image, band.data(), quint32(width), quint32(rows)) == 0)
            return false;
        for (qint64 row = 0; row < rows; ++row) {
            copyRow(band.data() + row * width, sink.row(int(y + row)), quint32(width));
            sink.finishRow(int(y + row));
        }
    }
    return true;
}

Transformations upright(TIFF *tiff)
{
    quint16 orientation = ORIENTATION_TOPLEFT;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ORIENTATION, &orientation);
    switch (orientation) {
    case ORIENTATION_TOPRIGHT:
        return QImageIOHandler::TransformationMirror;
    case ORIENTATION_BOTRIGHT:
        return QImageIOHandler::TransformationRotate180;
    case ORIENTATION_BOTLEFT:
        return QImageIOHandler::TransformationFlip;
    case ORIENTATION_LEFTTOP:
        return QImageIOHandler::TransformationFlipAndRotate90;
    case ORIENTATION_RIGHTTOP:
        return QImageIOHandler::TransformationRotate90;
    case ORIENTATION_RIGHTBOT:
        return QImageIOHandler::TransformationMirrorAndRotate90;
    case ORIENTATION_LEFTBOT:
        return QImageIOHandler::TransformationRotate270;
    default:
        return QImageIOHandler::TransformationNone;
    }
}

} // namespace

std::optional<Transformations> decodeTiff(QIODevice &file, PictureSink &sink)
{
    const std::unique_ptr<TIFF, Close> tiff = opened(file);
    if (!tiff)
        return std::nullopt;
    const Transformations turns = upright(tiff.get());
    Conversion conversion(tiff.get());
    const bool isTurned = turns != QImageIOHandler::TransformationNone;
    if (!conversion.isReady || !readRows(tiff.get(), conversion.image, file.size(), isTurned, sink))
        return std::nullopt;
    return turns;
}
