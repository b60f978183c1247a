#include "files/ClipboardWriter.h"

#include "core/VelmoraLog.h"
#include "filesystem/FileUrls.h"
#include "filesystem/OpenFile.h"
#include "imaging/decodeImage.h"
#include "platform/Pasteboard.h"

namespace
{

using ImageType = PasteboardContents::ImageType;
using Picture = PasteboardContents::Picture;

/// What has no type of its own on the clipboard stands there as PNG.
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

/// Nothing when the file can't be read. The bytes are kept and not the place: by the time that
/// somebody wants the decoded picture the file may be elsewhere.
std::optional<Picture> picture(const QUrl &url)
{
    const std::shared_ptr<OpenFile> file = OpenFile::open(url.toLocalFile());
    if (!file)
        return std::nullopt;
    const std::optional<QByteArray> bytes = readWhole(file->descriptor(), maximumPictureFileSize);
    if (!bytes)
        return std::nullopt;
    return Picture{*bytes, imageType(url), [content = *bytes] { return decodeImage(content); }};
}

PasteboardContents contentsFor(const QUrl &url, CopyBehavior behavior)
{
    PasteboardContents contents;
    if (behavior == CopyBehavior::image || behavior == CopyBehavior::imageAndFile)
        contents.picture = picture(url);
    if (behavior == CopyBehavior::file || behavior == CopyBehavior::imageAndFile)
        contents.file = url;
    return contents;
}

/// A file reference counts as put there whatever the system says.
bool put(Pasteboard &pasteboard, PasteboardContents contents)
{
    const bool hasFile = contents.file.has_value();
    if (hasFile || contents.picture)
        return pasteboard.write(std::move(contents)) || hasFile;
    pasteboard.clear();
    return false;
}

} // namespace

bool ClipboardWriter::copy(Pasteboard &pasteboard, const QUrl &url, CopyBehavior behavior)
{
    const QString path = url.toLocalFile();
    if (!FileUrls::exists(url)) {
        VelmoraLog::write(QStringLiteral("copy failed missing file ") + path);
        return false;
    }
    const bool wrote = put(pasteboard, contentsFor(url, behavior));
    VelmoraLog::write((wrote ? QStringLiteral("copied ") : QStringLiteral("copy failed ")) + path);
    return wrote;
}
