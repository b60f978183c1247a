// SPDX-License-Identifier: MIT
#include "imaging/decodeHeic.h"

#include "imaging/PictureSink.h"

#include <QIODevice>

#include <libheif/heif.h>

#include <memory>

namespace
{

/// The most that the library holds per pixel, while it decodes and converts.
constexpr qint64 decoderPixelBytes = 6;

template <auto release>
struct Release {
    template <typename Object>
    void operator()(Object *object) const
    {
        release(object);
    }
};

using Context = std::unique_ptr<heif_context, Release<heif_context_free>>;
using Handle = std::unique_ptr<heif_image_handle, Release<heif_image_handle_release>>;
using Pixels = std::unique_ptr<heif_image, Release<heif_image_release>>;

bool succeeded(const heif_error &error)
{
    return error.code == heif_error_Ok;
}

Handle primaryPicture(heif_context *context)
{
    heif_image_handle *handle = nullptr;
    return succeeded(heif_context_get_primary_image_handle(context, &handle)) ? Handle(handle)
                                                                              : Handle();
}

/// Decodes to 8 bits per channel; the library turns the picture upright by itself.
Pixels decode(const heif_image_handle *handle, heif_chroma chroma)
{
    heif_image *image = nullptr;
    const bool done =
        succeeded(heif_decode_image(handle, &image, heif_colorspace_RGB, chroma, nullptr));
    return done ? Pixels(image) : Pixels();
}

QIODevice &deviceOf(void *file)
{
    return *static_cast<QIODevice *>(file);
}

const heif_reader reader = {
    1,
    [](void *file) { return int64_t(deviceOf(file).pos()); },
    [](void *to, size_t size, void *file) {
        return deviceOf(file).read(static_cast<char *>(to), qint64(size)) == qint64(size) ? 0 : 1;
    },
    [](int64_t position, void *file) { return deviceOf(file).seek(position) ? 0 : 1; },
    [](int64_t size, void *file) {
        return size <= deviceOf(file).size() ? heif_reader_grow_status_size_reached
                                             : heif_reader_grow_status_size_beyond_eof;
    },
};

bool copyRows(const heif_image *pixels, QSize size, bool hasAlpha, PictureSink &sink)
{
    int stride = 0;
    const uchar *plane = heif_image_get_plane_readonly(pixels, heif_channel_interleaved, &stride);
    const QSize decoded(heif_image_get_width(pixels, heif_channel_interleaved),
                        heif_image_get_height(pixels, heif_channel_interleaved));
    if (!plane || decoded != size)
        return false;
    for (int y = 0; y < size.height(); ++y) {
        const uchar *from = plane + qptrdiff(y) * stride;
        QRgb *const to = sink.row(y);
        const int channels = hasAlpha ? 4 : 3;
        for (int x = 0; x < size.width(); ++x, from += channels)
            to[x] = qRgba(from[0], from[1], from[2], hasAlpha ? from[3] : 0xff);
        sink.finishRow(y);
    }
    return true;
}

} // namespace

bool isHeic(const QByteArray &beginning)
{
    const auto *bytes = reinterpret_cast<const uint8_t *>(beginning.constData());
    const heif_filetype_result kind = heif_check_filetype(bytes, int(beginning.size()));
    return kind == heif_filetype_yes_supported || kind == heif_filetype_yes_unsupported;
}

bool decodeHeic(QIODevice &file, PictureSink &sink)
{
    const Context context(heif_context_alloc());
    if (!context)
        return false;
    // Several pictures are already being decoded at once.
    heif_context_set_max_decoding_threads(context.get(), 1);
    if (!succeeded(heif_context_read_from_reader(context.get(), &reader, &file, nullptr)))
        return false;
    const Handle handle = primaryPicture(context.get());
    if (!handle)
        return false;
    const QSize size(heif_image_handle_get_width(handle.get()),
                     heif_image_handle_get_height(handle.get()));
    const qint64 pixels = qint64(size.width()) * size.height();
    const bool hasAlpha = heif_image_handle_has_alpha_channel(handle.get()) != 0;
    if (!sink.begin({size, hasAlpha ? PictureSink::Alpha::Straight : PictureSink::Alpha::None},
                    pixels * decoderPixelBytes + file.size()))
        return false;
    const Pixels decoded =
        decode(handle.get(), hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB);
    return decoded && copyRows(decoded.get(), size, hasAlpha, sink);
}
