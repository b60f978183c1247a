// SPDX-License-Identifier: MIT
#include "imaging/decodePng.h"

#include "imaging/PictureSink.h"
#include "imaging/PngReader.h"

#include <QIODevice>

namespace
{

void readBytes(png_structp png, png_bytep to, std::size_t size)
{
    auto *file = static_cast<QIODevice *>(png_get_io_ptr(png));
    if (file->read(reinterpret_cast<char *>(to), qint64(size)) != qint64(size))
        png_error(png, "cut short");
}

/// Texts, profiles and the like are not even read into memory: a small file may hold gigabytes of
/// them.
void skipWhatIsNoPixels(png_structp png)
{
    constexpr png_byte transparency[] = "tRNS";
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_AS_DEFAULT, transparency, 1);
}

/// Whatever the file stores, a row is delivered as one QRgb per pixel.
void askForPixels(png_structp png)
{
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    if (QSysInfo::ByteOrder == QSysInfo::LittleEndian) {
        png_set_bgr(png);
        png_set_add_alpha(png, 0xff, PNG_FILLER_AFTER);
    } else {
        png_set_swap_alpha(png);
        png_set_add_alpha(png, 0xff, PNG_FILLER_BEFORE);
    }
}

/// What the library itself holds: some rows in their stored form.
qint64 readerBytes(qint64 width)
{
    constexpr qint64 rows = 4;
    constexpr qint64 widestPixel = 8;
    return rows * widestPixel * width;
}

bool readRows(png_structp png, png_infop info, PictureSink &sink)
{
    png_read_info(png, info);
    const auto width = int(png_get_image_width(png, info));
    const auto height = int(png_get_image_height(png, info));
    const bool hasAlpha = (png_get_color_type(png, info) & PNG_COLOR_MASK_ALPHA) != 0 ||
                          png_get_valid(png, info, PNG_INFO_tRNS) != 0;
    const bool isInterlaced = png_get_interlace_type(png, info) != PNG_INTERLACE_NONE;
    if (!sink.begin({{width, height},
                     hasAlpha ? PictureSink::Alpha::Straight : PictureSink::Alpha::None,
                     isInterlaced ? PictureSink::Order::Any : PictureSink::Order::Downwards},
                    readerBytes(width)))
        return false;
    askForPixels(png);
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < height; ++y) {
            png_read_row(png, reinterpret_cast<png_bytep>(sink.row(y)), nullptr);
            if (pass == passes - 1)
                sink.finishRow(y);
        }
    }
    png_read_end(png, nullptr);
    return true;
}

/// The library leaves by a long jump when it fails, which must not skip the destructor of any
/// object of ours.
bool read(png_structp png, png_infop info, PictureSink &sink)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    return readRows(png, info, sink);
}

} // namespace

bool decodePng(QIODevice &file, PictureSink &sink)
{
    const PngReader reader;
    if (!reader.info)
        return false;
    png_set_read_fn(reader.png, &file, readBytes);
    skipWhatIsNoPixels(reader.png);
    return read(reader.png, reader.info, sink);
}
