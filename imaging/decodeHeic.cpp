#include "imaging/decodeHeic.h"

#include <libheif/heif.h>

#include <memory>

namespace
{

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

/// Decodes to 8 bits a channel; the library turns the picture upright by itself.
Pixels decode(const heif_image_handle *handle, heif_chroma chroma)
{
    heif_image *image = nullptr;
    const bool done =
        succeeded(heif_decode_image(handle, &image, heif_colorspace_RGB, chroma, nullptr));
    return done ? Pixels(image) : Pixels();
}

QImage copied(const heif_image *pixels, QImage::Format format)
{
    int stride = 0;
    const uchar *plane = heif_image_get_plane_readonly(pixels, heif_channel_interleaved, &stride);
    const QSize size(heif_image_get_width(pixels, heif_channel_interleaved),
                     heif_image_get_height(pixels, heif_channel_interleaved));
    if (!plane || stride <= 0)
        return {};
    return QImage(plane, size.width(), size.height(), stride, format).copy();
}

} // namespace

bool isHeic(const QByteArray &beginning)
{
    const auto *bytes = reinterpret_cast<const uint8_t *>(beginning.constData());
    const heif_filetype_result kind = heif_check_filetype(bytes, int(beginning.size()));
    return kind == heif_filetype_yes_supported || kind == heif_filetype_yes_unsupported;
}

QImage decodeHeic(const QByteArray &bytes, qint64 maximumPixels)
{
    const Context context(heif_context_alloc());
    if (!context)
        return {};
    // Several pictures are decoded at once already.
    heif_context_set_max_decoding_threads(context.get(), 1);
    if (!succeeded(heif_context_read_from_memory_without_copy(context.get(), bytes.constData(),
                                                              size_t(bytes.size()), nullptr)))
        return {};
    const Handle handle = primaryPicture(context.get());
    if (!handle)
        return {};
    const qint64 width = heif_image_handle_get_width(handle.get());
    const qint64 height = heif_image_handle_get_height(handle.get());
    if (width <= 0 || height <= 0 || width * height > maximumPixels)
        return {};
    const bool hasAlpha = heif_image_handle_has_alpha_channel(handle.get()) != 0;
    const Pixels pixels =
        decode(handle.get(), hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB);
    if (!pixels)
        return {};
    return copied(pixels.get(), hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
}
