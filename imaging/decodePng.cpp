#include "imaging/decodePng.h"

#include "imaging/pictureMemory.h"

#include <QByteArrayView>
#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

namespace
{

// --- The file: a signature, and chunks of length, type, data and checksum.

struct Chunk {
    QByteArrayView type;
    QByteArrayView data;
};

/// Takes the first chunk off `rest`; nothing where it is cut short or its checksum does not fit.
std::optional<Chunk> takeChunk(QByteArrayView &rest)
{
    constexpr qsizetype frame = 12; // length, type and checksum
    if (rest.size() < frame)
        return std::nullopt;
    const auto length = qFromBigEndian<quint32>(rest.data());
    if (length > std::size_t(rest.size() - frame))
        return std::nullopt;
    const QByteArrayView checked = rest.sliced(4, 4 + qsizetype(length));
    const auto checksum = qFromBigEndian<quint32>(checked.data() + checked.size());
    if (libdeflate_crc32(0, checked.data(), std::size_t(checked.size())) != checksum)
        return std::nullopt;
    rest = rest.sliced(frame + qsizetype(length));
    return Chunk{checked.first(4), checked.sliced(4)};
}

struct Header {
    QSize size;
    int channels; ///< 3 or 4: with alpha
};

/// Nothing for the kinds of PNG that are left to others.
std::optional<Header> plainHeader(const Chunk &chunk)
{
    constexpr qsizetype length = 13;
    if (chunk.type != "IHDR" || chunk.data.size() != length)
        return std::nullopt;
    const auto width = qFromBigEndian<qint32>(chunk.data.data());
    const auto height = qFromBigEndian<qint32>(chunk.data.data() + 4);
    const QByteArrayView kind = chunk.data.sliced(8);
    if (width <= 0 || height <= 0)
        return std::nullopt;
    // Eight bits; red, green, blue; the one compression and filtering there is; not interlaced.
    if (kind == QByteArrayView("\x08\x02\0\0\0", 5))
        return Header{{width, height}, 3};
    if (kind == QByteArrayView("\x08\x06\0\0\0", 5))
        return Header{{width, height}, 4};
    return std::nullopt;
}

struct PlainPng {
    Header header;
    QByteArray compressed; ///< the data of all "IDAT" chunks: one zlib stream
};

/// A decoder must know a chunk whose type begins with a capital.
bool isCritical(const Chunk &chunk)
{
    return chunk.type[0] >= 'A' && chunk.type[0] <= 'Z';
}

/// Nothing for other kinds of PNG, for broken ones, and for too many pixels. May refer to `bytes`.
std::optional<PlainPng> parse(const QByteArray &bytes, qint64 maximumPixels)
{
    constexpr QByteArrayView signature("\x89PNG\r\n\x1A\n", 8);
    if (!bytes.startsWith(signature))
        return std::nullopt;
    QByteArrayView rest = QByteArrayView(bytes).sliced(signature.size());
    std::optional<Chunk> chunk = takeChunk(rest);
    const std::optional<Header> header = chunk ? plainHeader(*chunk) : std::nullopt;
    if (!header || qint64(header->size.width()) * header->size.height() > maximumPixels)
        return std::nullopt;
    PlainPng png{*header, {}};
    for (chunk = takeChunk(rest); chunk && chunk->type != "IEND"; chunk = takeChunk(rest)) {
        if (chunk->type == "IDAT" && png.compressed.isEmpty())
            png.compressed = QByteArray::fromRawData(chunk->data.data(), chunk->data.size());
        else if (chunk->type == "IDAT")
            png.compressed.append(chunk->data);
        else if (isCritical(*chunk) || chunk->type == "tRNS") // a colour that is transparent
            return std::nullopt;
    }
    return chunk ? std::optional(png) : std::nullopt;
}

bool inflate(const QByteArray &compressed, unsigned char *to, std::size_t size)
{
    const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)>
        decompressor(libdeflate_alloc_decompressor(), &libdeflate_free_decompressor);
    return decompressor && libdeflate_zlib_decompress(decompressor.get(), compressed.constData(),
                                                      std::size_t(compressed.size()), to, size,
                                                      nullptr) == LIBDEFLATE_SUCCESS;
}

// --- The rows: each channel is stored as its difference from what its neighbours predict. The
// four channels of a pixel are worked on at once, in one word.

/// Channel by channel, without carry from one to the next.
constexpr QRgb sum(QRgb first, QRgb second)
{
    constexpr QRgb low = 0x7f7f7f7fU;
    return ((first & low) + (second & low)) ^ ((first ^ second) & ~low);
}

/// Channel by channel, rounded down.
constexpr QRgb mean(QRgb first, QRgb second)
{
    return (first & second) + (((first ^ second) & 0xfefefefeU) >> 1);
}

/// Of one channel: the neighbour that is nearest to left + above - corner.
int paethPredictor(int left, int above, int corner)
{
    const int toLeft = std::abs(above - corner);
    const int toAbove = std::abs(left - corner);
    const int toCorner = std::abs(left + above - 2 * corner);
    const int next = toAbove <= toCorner ? above : corner;
    return toLeft <= std::min(toAbove, toCorner) ? left : next;
}

QRgb paethPrediction(QRgb left, QRgb above, QRgb corner)
{
    // Most of a screen is plain: all channels have the same neighbour.
    if (left == corner)
        return above;
    if (above == corner)
        return left;
    QRgb predicted = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const int channel = paethPredictor(int(left >> shift & 0xff), int(above >> shift & 0xff),
                                           int(corner >> shift & 0xff));
        predicted |= QRgb(channel) << shift;
    }
    return predicted;
}

enum Filter : unsigned char { None, Sub, Up, Average, Paeth };

/// The pixel that is stored at this place; no alpha where none is stored.
template <int channels>
QRgb storedPixel(const unsigned char *stored)
{
    return qRgba(stored[0], stored[1], stored[2], channels == 4 ? stored[3] : 0);
}

/// Outside of the picture all is 0; a channel that is not stored is 255 and differs nowhere.
template <int channels>
constexpr QRgb outside = channels == 4 ? 0 : 0xff000000U;

/// Turns a row of differences into pixels; false for a filter that there is not.
template <int channels>
bool unfilter(unsigned char filter, const unsigned char *stored, QRgb *row, const QRgb *above,
              int width)
{
    QRgb left = outside<channels>;
    QRgb corner = outside<channels>;
    switch (filter) {
    case None:
        for (int x = 0; x < width; ++x, stored += channels)
            row[x] = sum(storedPixel<channels>(stored), outside<channels>);
        return true;
    case Sub:
        for (int x = 0; x < width; ++x, stored += channels)
            row[x] = left = sum(storedPixel<channels>(stored), left);
        return true;
    case Up:
        for (int x = 0; x < width; ++x, stored += channels)
            row[x] = sum(storedPixel<channels>(stored), above[x]);
        return true;
    case Average:
        for (int x = 0; x < width; ++x, stored += channels)
            row[x] = left = sum(storedPixel<channels>(stored), mean(left, above[x]));
        return true;
    case Paeth:
        for (int x = 0; x < width; ++x, stored += channels) {
            left = sum(storedPixel<channels>(stored), paethPrediction(left, above[x], corner));
            row[x] = left;
            corner = above[x];
        }
        return true;
    default:
        return false;
    }
}

QRgb commonBits(const QRgb *row, int width)
{
    QRgb common = 0xffffffffU;
    for (int x = 0; x < width; ++x)
        common &= row[x];
    return common;
}

/// Turns the stored rows, each behind the number of its filter, into pixels; nothing for an unknown
/// filter, else the bits that all of them have in common. The pixels may overwrite what they have
/// been made of.
template <int channels>
std::optional<QRgb> makePixels(const unsigned char *stored, QSize size, QRgb *pixels)
{
    const int width = size.width();
    const std::vector<QRgb> aboveFirst(std::size_t(width), outside<channels>);
    const QRgb *above = aboveFirst.data();
    QRgb common = 0xffffffffU;
    for (int y = 0; y < size.height(); ++y) {
        const unsigned char filter = *stored++;
        if (!unfilter<channels>(filter, stored, pixels, above, width))
            return std::nullopt;
        common &= commonBits(pixels, width);
        above = pixels;
        pixels += width;
        stored += channels * width;
    }
    return common;
}

} // namespace

QImage decodePlainPng(const QByteArray &bytes, qint64 maximumPixels)
{
    const std::optional<PlainPng> png = parse(bytes, maximumPixels);
    if (!png)
        return {};
    const auto width = std::size_t(png->header.size.width());
    const auto height = std::size_t(png->header.size.height());
    // One memory for both: the pixels lie at its beginning and the stored rows at its end, so that
    // no row of pixels reaches the stored row after its own.
    const std::size_t storedBytes = height * (1 + std::size_t(png->header.channels) * width);
    const std::size_t memoryBytes = std::max(storedBytes, height * 4 * width);
    const std::shared_ptr<unsigned char> memory = allocatePictureMemory(memoryBytes);
    if (!memory)
        return {};
    unsigned char *const stored = memory.get() + (memoryBytes - storedBytes);
    if (!inflate(png->compressed, stored, storedBytes))
        return {};
    auto *const pixels = reinterpret_cast<QRgb *>(memory.get());
    const std::optional<QRgb> common = png->header.channels == 4
                                           ? makePixels<4>(stored, png->header.size, pixels)
                                           : makePixels<3>(stored, png->header.size, pixels);
    if (!common)
        return {};
    const bool opaque = qAlpha(*common) == 0xff;
    return pictureIn(memory, png->header.size,
                     opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32);
}
