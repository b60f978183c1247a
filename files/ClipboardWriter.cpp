// SPDX-License-Identifier: MIT
#include "files/ClipboardWriter.h"

#include "core/VelmoraLog.h"
#include "filesystem/FileUrls.h"
#include "filesystem/OpenFile.h"
#include "imaging/decodeImage.h"

using namespace Qt::StringLiterals;

namespace
{

using ImageType = PasteboardContents::ImageType;
using Picture = PasteboardContents::Picture;

/// Images without a clipboard type of their own are offered as PNG.
ImageType imageType(const QUrl &url)
{
    const QString extension = FileUrls::pathExtension(url.toLocalFile()).toLower();
    if (extension == u"jpg" || extension == u"jpeg")
        return ImageType::Jpeg;
    if (extension == u"heic")
        return ImageType::Heic;
    if (extension == u"tiff" || extension == u"tif")
        return ImageType::Tiff;
    return ImageType::Png;
}

/// Nothing if the file cannot be read. Keeps the bytes rather than the path, because the file may
/// have moved by the time another program asks for the decoded picture. A file that is too large is
/// kept open instead, and offered only in decoded form.
std::optional<Picture> picture(const QUrl &url)
{
    const std::shared_ptr<OpenFile> file = OpenFile::open(url.toLocalFile());
    if (!file)
        return std::nullopt;
    const std::optional<FileIdentity> identity = file->identity();
    if (identity && identity->size > maximumClipboardBytes)
        return Picture{std::nullopt, ImageType::Png,
                       [file] { return decodeImage(file->descriptor()); }};
    const std::optional<QByteArray> bytes = readWhole(file->descriptor(), maximumClipboardBytes);
    if (!bytes)
        return std::nullopt;
    return Picture{*bytes, imageType(url), [content = *bytes] { return decodeImage(content); }};
}

bool put(Pasteboard &pasteboard, PasteboardContents contents)
{
    if (contents.file || contents.picture)
        return pasteboard.write(std::move(contents));
    pasteboard.clear();
    return false;
}

} // namespace

ClipboardWriter::Contents ClipboardWriter::read(const QUrl &url, CopyBehavior behavior)
{
    if (!FileUrls::exists(url))
        return missing(url);
    Contents read{url, false, {}};
    if (behavior == CopyBehavior::image || behavior == CopyBehavior::imageAndFile)
        read.contents.picture = picture(url);
    if (behavior == CopyBehavior::file || behavior == CopyBehavior::imageAndFile)
        read.contents.file = url;
    return read;
}

ClipboardWriter::Contents ClipboardWriter::missing(const QUrl &url)
{
    return {url, true, {}};
}

bool ClipboardWriter::copy(Pasteboard &pasteboard, Contents read)
{
    const QString path = read.url.toLocalFile();
    if (read.isMissing) {
        VelmoraLog::write(u"copy failed missing file "_s + path);
        return false;
    }
    const bool wrote = put(pasteboard, std::move(read.contents));
    VelmoraLog::write((wrote ? u"copied "_s : u"copy failed "_s) + path);
    return wrote;
}
