// SPDX-License-Identifier: MIT
#include "imaging/decodeJpeg.h"

#include "imaging/PictureSink.h"

#include <QIODevice>

#include <array>
#include <csetjmp>
#include <cstdio>

#include <jpeglib.h>

namespace
{

/// A file with more scans than this is made to keep decoders busy; ten are usual.
constexpr int maximumScans = 100;

constexpr long smallBuffers = 4'000'000;

/// The library's structures, and ours that it hands back.
struct Reader {
    jpeg_decompress_struct jpeg = {};
    jpeg_error_mgr errors = {};
    jpeg_source_mgr source = {};
    jpeg_progress_mgr progress = {};
    std::jmp_buf failed = {};
    QIODevice *file = nullptr;
    std::array<JOCTET, 65536> bytes;
};

Reader &readerOf(void *jpeg)
{
    return *static_cast<Reader *>(static_cast<j_decompress_ptr>(jpeg)->client_data);
}

[[noreturn]] void fail(j_common_ptr jpeg)
{
    std::longjmp(readerOf(jpeg).failed, 1);
}

/// Called at the end of the file: there is no more, which ends the decoding.
boolean fillBuffer(j_decompress_ptr jpeg)
{
    Reader &reader = readerOf(jpeg);
    const qint64 count = reader.file->read(reinterpret_cast<char *>(reader.bytes.data()),
                                           qint64(reader.bytes.size()));
    reader.source.next_input_byte = reader.bytes.data();
    reader.source.bytes_in_buffer = std::size_t(std::max<qint64>(0, count));
    return count > 0 ? TRUE : FALSE;
}

void skipBytes(j_decompress_ptr jpeg, long count)
{
    jpeg_source_mgr &source = readerOf(jpeg).source;
    while (count > long(source.bytes_in_buffer)) {
        count -= long(source.bytes_in_buffer);
        if (fillBuffer(jpeg) == FALSE)
            fail(reinterpret_cast<j_common_ptr>(jpeg));
    }
    if (count > 0) {
        source.next_input_byte += count;
        source.bytes_in_buffer -= std::size_t(count);
    }
}

void watchScans(j_common_ptr jpeg)
{
    if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > maximumScans)
        fail(jpeg);
}

void setUp(Reader &reader)
{
    reader.jpeg.err = jpeg_std_error(&reader.errors);
    reader.errors.error_exit = fail;
    reader.errors.output_message = [](j_common_ptr) {};
    reader.jpeg.client_data = &reader;
    jpeg_create_decompress(&reader.jpeg);
    reader.source.init_source = [](j_decompress_ptr) {};
    reader.source.fill_input_buffer = fillBuffer;
    reader.source.skip_input_data = skipBytes;
    reader.source.resync_to_restart = jpeg_resync_to_restart;
    reader.source.term_source = [](j_decompress_ptr) {};
    reader.jpeg.src = &reader.source;
    reader.progress.progress_monitor = watchScans;
    reader.jpeg.progress = &reader.progress;
}

/// For a picture that comes in several scans, the library holds all blocks until the last scan.
qint64 blockBytes(jpeg_decompress_struct &jpeg)
{
    if (jpeg_has_multiple_scans(&jpeg) == FALSE)
        return 0;
    qint64 bytes = 0;
    for (int component = 0; component < jpeg.num_components; ++component) {
        const jpeg_component_info &info = jpeg.comp_info[component];
        const qint64 across = info.width_in_blocks + JDIMENSION(info.h_samp_factor);
        const qint64 down = info.height_in_blocks + JDIMENSION(info.v_samp_factor);
        bytes += across * down * qint64(sizeof(JBLOCK));
    }
    return bytes;
}

/// CMYK as most programs store it: inverted.
void makePixels(QRgb *row, JDIMENSION width)
{
    auto *inks = reinterpret_cast<const JSAMPLE *>(row);
    for (JDIMENSION x = 0; x < width; ++x, inks += 4) {
        const int black = inks[3];
        row[x] = qRgb(inks[0] * black / 255, inks[1] * black / 255, inks[2] * black / 255);
    }
}

bool readRows(jpeg_decompress_struct &jpeg, bool isTurned, PictureSink &sink)
{
    if (jpeg_read_header(&jpeg, TRUE) != JPEG_HEADER_OK)
        return false;
    const bool isInk = jpeg.jpeg_color_space == JCS_CMYK || jpeg.jpeg_color_space == JCS_YCCK;
    constexpr bool isLittle = QSysInfo::ByteOrder == QSysInfo::LittleEndian;
    jpeg.out_color_space = isInk ? JCS_CMYK : isLittle ? JCS_EXT_BGRA : JCS_EXT_ARGB;
    const qint64 blocks = blockBytes(jpeg);
    PictureSink::Layout layout;
    layout.size = {int(jpeg.image_width), int(jpeg.image_height)};
    layout.isTurned = isTurned;
    if (!sink.begin(layout, smallBuffers + blocks))
        return false;
    jpeg.mem->max_memory_to_use = long(smallBuffers + blocks);
    if (jpeg_start_decompress(&jpeg) == FALSE)
        return false;
    for (JDIMENSION y = 0; y < jpeg.output_height; ++y) {
        QRgb *const row = sink.row(int(y));
        auto *samples = reinterpret_cast<JSAMPROW>(row);
        if (jpeg_read_scanlines(&jpeg, &samples, 1) != 1)
            return false;
        if (isInk)
            makePixels(row, jpeg.output_width);
        sink.finishRow(int(y));
    }
    return jpeg_finish_decompress(&jpeg) != FALSE;
}

/// The library leaves by a long jump when it fails, which must not skip the destructor of any
/// object of ours.
bool read(Reader &reader, bool isTurned, PictureSink &sink)
{
    if (setjmp(reader.failed) != 0)
        return false;
    setUp(reader);
    return readRows(reader.jpeg, isTurned, sink);
}

} // namespace

bool decodeJpeg(QIODevice &file, bool isTurned, PictureSink &sink)
{
    const auto reader = std::make_unique<Reader>();
    reader->file = &file;
    const bool done = read(*reader, isTurned, sink);
    jpeg_destroy_decompress(&reader->jpeg);
    return done;
}
