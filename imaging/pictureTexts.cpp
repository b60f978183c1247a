// SPDX-License-Identifier: MIT
#include "imaging/pictureTexts.h"

#include "imaging/DescriptorDevice.h"
#include "imaging/PngReader.h"

#include <cstring>

namespace
{

/// Screenshot tools write a few hundred bytes. A compressed text may not unpack to more than this
/// either.
constexpr qint64 mostBytes = 256 * qint64(1024);
constexpr png_alloc_size_t longestChunk = 64 * png_alloc_size_t(1024);
constexpr png_uint_32 mostChunks = 64;

struct Source {
    explicit Source(int descriptor) : file(descriptor) {}

    DescriptorDevice file;
    qint64 bytesLeft = mostBytes;
};

void readBytes(png_structp png, png_bytep to, std::size_t size)
{
    auto *source = static_cast<Source *>(png_get_io_ptr(png));
    source->bytesLeft -= qint64(size);
    if (source->bytesLeft < 0 ||
        source->file.read(reinterpret_cast<char *>(to), qint64(size)) != qint64(size))
        png_error(png, "no more");
}

void keepTextsAlone(png_structp png)
{
    constexpr png_byte texts[] = "tEXt\0zTXt\0iTXt";
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_AS_DEFAULT, texts, 3);
    png_set_chunk_malloc_max(png, longestChunk);
    png_set_chunk_cache_max(png, mostChunks);
}

/// The library leaves by a long jump when it fails, which must not skip the destructor of any
/// object of ours.
bool readUpToPixels(png_structp png, png_infop info)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    png_read_info(png, info);
    return true;
}

QString textOf(const png_text &text)
{
    const bool isUnicode = text.compression == PNG_ITXT_COMPRESSION_NONE ||
                           text.compression == PNG_ITXT_COMPRESSION_zTXt;
    const auto length = qsizetype(isUnicode ? text.itxt_length : text.text_length);
    const QByteArrayView bytes(text.text, length);
    QString result =
        (isUnicode ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes)).simplified();
    result.removeIf([](QChar letter) { return letter.category() == QChar::Other_Control; });
    return result.left(longestPictureText);
}

} // namespace

PictureTexts pictureTexts(int descriptor)
{
    Source source(descriptor);
    const PngReader reader;
    if (!reader.info)
        return {};
    png_set_read_fn(reader.png, &source, readBytes);
    keepTextsAlone(reader.png);
    if (!readUpToPixels(reader.png, reader.info))
        return {};
    png_textp texts = nullptr;
    const int count = png_get_text(reader.png, reader.info, &texts, nullptr);
    PictureTexts result;
    for (int i = 0; i < count; ++i) {
        if (std::strcmp(texts[i].key, "windowTitle") == 0)
            result.windowTitle = textOf(texts[i]);
        else if (std::strcmp(texts[i].key, "Software") == 0)
            result.software = textOf(texts[i]);
    }
    return result;
}
