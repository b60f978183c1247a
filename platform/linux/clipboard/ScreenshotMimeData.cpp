// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/ScreenshotMimeData.h"

#include <QBuffer>

using namespace Qt::StringLiterals;

namespace
{

using ImageType = PasteboardContents::ImageType;
using Picture = PasteboardContents::Picture;

QString imageFormat(ImageType type)
{
    switch (type) {
    case ImageType::Png:
        return u"image/png"_s;
    case ImageType::Jpeg:
        return u"image/jpeg"_s;
    case ImageType::Heic:
        return u"image/heic"_s;
    case ImageType::Tiff:
        return u"image/tiff"_s;
    }
    return {};
}

QByteArray pngBytes(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, "png"))
        bytes.clear();
    return bytes;
}

/// The formats of a file reference, in the order in which they are offered: some file managers
/// paste the first one that they know.
namespace FileFormat
{
constexpr QStringView uriList = u"text/uri-list";
constexpr QStringView copiedFiles = u"x-special/gnome-copied-files";
constexpr QStringView copiedFilesOfMate = u"x-special/mate-copied-files";
constexpr QStringView cutSelection = u"application/x-kde-cutselection";
constexpr QStringView plainText = u"text/plain";

constexpr QStringView all[] = {uriList, copiedFiles, copiedFilesOfMate, cutSelection, plainText};
} // namespace FileFormat

QVariant fileData(const QUrl &file, const QString &mimeType, QMetaType type)
{
    if (mimeType == FileFormat::uriList) {
        if (type.id() == QMetaType::QVariantList || type.id() == QMetaType::QUrl)
            return QVariantList{file};
        return QByteArray(file.toEncoded() + "\r\n");
    }
    // Some programs would take a line end after the last name for an empty name.
    if (mimeType == FileFormat::copiedFiles || mimeType == FileFormat::copiedFilesOfMate)
        return QByteArray("copy\n" + file.toEncoded());
    if (mimeType == FileFormat::cutSelection)
        return "0"_ba;
    if (mimeType == FileFormat::plainText)
        return file.toLocalFile();
    return {};
}

} // namespace

ScreenshotMimeData::ScreenshotMimeData(PasteboardContents contents, FileTransferPortal &portal)
    : m_contents(std::move(contents))
{
    if (m_contents.file)
        m_transfer.emplace(portal, *m_contents.file);
}

QStringList ScreenshotMimeData::formats() const
{
    QStringList formats;
    if (m_contents.file) {
        for (const QStringView format : FileFormat::all)
            formats.append(format.toString());
    }
    if (m_transfer && m_transfer->isOffered())
        formats += FileTransfer::formats();
    if (m_contents.picture) {
        const Picture &picture = *m_contents.picture;
        if (picture.bytes)
            formats.append(imageFormat(picture.type));
        if (picture.image && !formats.contains(imageFormat(ImageType::Png)))
            formats.append(imageFormat(ImageType::Png));
    }
    return formats;
}

void ScreenshotMimeData::fileMoved(const QUrl &from, const QUrl &to)
{
    if (m_contents.file != from)
        return;
    m_contents.file = to;
    m_transfer->setFile(to);
}

QVariant ScreenshotMimeData::retrieveData(const QString &mimeType, QMetaType type) const
{
    if (m_contents.file) {
        const QVariant data = fileData(*m_contents.file, mimeType, type);
        if (data.isValid())
            return data;
        if (FileTransfer::formats().contains(mimeType))
            return m_transfer->key();
    }
    return m_contents.picture ? pictureData(*m_contents.picture, mimeType) : QVariant();
}

QVariant ScreenshotMimeData::pictureData(const Picture &picture, const QString &mimeType) const
{
    if (picture.bytes && mimeType == imageFormat(picture.type))
        return *picture.bytes;
    if (picture.image && mimeType == imageFormat(ImageType::Png)) {
        if (!m_png)
            m_png = pngBytes(picture.image());
        return *m_png;
    }
    return {};
}
