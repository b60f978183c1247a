#include "platform/Pasteboard.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>

namespace
{

using ImageType = PasteboardContents::ImageType;
using Picture = PasteboardContents::Picture;

QString imageFormat(ImageType type)
{
    switch (type) {
    case ImageType::Png:
        return QStringLiteral("image/png");
    case ImageType::Jpeg:
        return QStringLiteral("image/jpeg");
    case ImageType::Heic:
        return QStringLiteral("image/heic");
    case ImageType::Tiff:
        return QStringLiteral("image/tiff");
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
QString uriList()
{
    return QStringLiteral("text/uri-list");
}
QString copiedFiles()
{
    return QStringLiteral("x-special/gnome-copied-files");
}
QString copiedFilesOfMate()
{
    return QStringLiteral("x-special/mate-copied-files");
}
QString cutSelection()
{
    return QStringLiteral("application/x-kde-cutselection");
}
QString plainText()
{
    return QStringLiteral("text/plain");
}
} // namespace FileFormat

/// What one copy put on the clipboard. Each format is made when somebody asks for it, so that a
/// file reference always tells where the file is now.
class ScreenshotMimeData : public QMimeData
{
public:
    explicit ScreenshotMimeData(PasteboardContents contents) : m_contents(std::move(contents)) {}

    QStringList formats() const override
    {
        QStringList formats;
        if (m_contents.file)
            formats << FileFormat::uriList() << FileFormat::copiedFiles()
                    << FileFormat::copiedFilesOfMate() << FileFormat::cutSelection()
                    << FileFormat::plainText();
        if (m_contents.picture) {
            const Picture &picture = *m_contents.picture;
            if (picture.bytes)
                formats << imageFormat(picture.type);
            if (picture.image && !formats.contains(imageFormat(ImageType::Png)))
                formats << imageFormat(ImageType::Png);
        }
        return formats;
    }

    bool hasFormat(const QString &mimeType) const override { return formats().contains(mimeType); }

    void fileMoved(const QUrl &from, const QUrl &to)
    {
        if (m_contents.file == from)
            m_contents.file = to;
    }

protected:
    QVariant retrieveData(const QString &mimeType, QMetaType type) const override
    {
        if (m_contents.file) {
            const QVariant data = fileData(*m_contents.file, mimeType, type);
            if (data.isValid())
                return data;
        }
        return m_contents.picture ? pictureData(*m_contents.picture, mimeType) : QVariant();
    }

private:
    static QVariant fileData(const QUrl &file, const QString &mimeType, QMetaType type)
    {
        if (mimeType == FileFormat::uriList()) {
            if (type.id() == QMetaType::QVariantList || type.id() == QMetaType::QUrl)
                return QVariantList{file};
            return QByteArray(file.toEncoded() + "\r\n");
        }
        // A line end after the last name would be an empty name to some.
        if (mimeType == FileFormat::copiedFiles() || mimeType == FileFormat::copiedFilesOfMate())
            return QByteArray("copy\n" + file.toEncoded());
        if (mimeType == FileFormat::cutSelection())
            return QByteArrayLiteral("0");
        if (mimeType == FileFormat::plainText())
            return file.toLocalFile();
        return {};
    }

    QVariant pictureData(const Picture &picture, const QString &mimeType) const
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

    PasteboardContents m_contents;
    /// Encoded when somebody has asked for it.
    mutable std::optional<QByteArray> m_png;
};

class DesktopPasteboard : public Pasteboard
{
public:
    void clear() override { QGuiApplication::clipboard()->clear(); }

    bool write(PasteboardContents contents) override
    {
        m_written = new ScreenshotMimeData(std::move(contents));
        QGuiApplication::clipboard()->setMimeData(m_written);
        return QGuiApplication::clipboard()->ownsClipboard();
    }

    void fileMoved(const QUrl &from, const QUrl &to) override
    {
        if (m_written)
            m_written->fileMoved(from, to);
    }

private:
    /// The clipboard's own; gone as soon as somebody else has put something there.
    QPointer<ScreenshotMimeData> m_written;
};

} // namespace

std::unique_ptr<Pasteboard> makePasteboard()
{
    return std::make_unique<DesktopPasteboard>();
}
