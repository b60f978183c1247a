// SPDX-License-Identifier: MIT
#include "platform/Pasteboard.h"

#include "platform/DraggedFile.h"

#include <QPointer>

#import <AppKit/AppKit.h>

namespace
{

using ImageType = PasteboardContents::ImageType;
using Picture = PasteboardContents::Picture;

NSPasteboardType pasteboardType(ImageType type)
{
    switch (type) {
    case ImageType::Png:
        return NSPasteboardTypePNG;
    case ImageType::Jpeg:
        return @"public.jpeg";
    case ImageType::Heic:
        return @"public.heic";
    case ImageType::Tiff:
        return NSPasteboardTypeTIFF;
    }
    return NSPasteboardTypePNG;
}

/// The image as the system reads the file's bytes; nil when they are not a picture.
NSImage *imageOf(const Picture &picture)
{
    return picture.bytes ? [[NSImage alloc] initWithData:picture.bytes->toNSData()] : nil;
}

/// The picture is written twice: as an image object, and as the file's own bytes, in their exact
/// encoding, for programs that can read them.
bool writePicture(NSPasteboard *board, const Picture &picture)
{
    bool wrote = false;
    if (NSImage *image = imageOf(picture))
        wrote = [board writeObjects:@[ image ]];
    if (picture.bytes) {
        [board setData:picture.bytes->toNSData() forType:pasteboardType(picture.type)];
        wrote = true;
    }
    return wrote;
}

/// The file as an object, and its plain path under the type of file URLs.
void writeFile(NSPasteboard *board, const QUrl &file)
{
    [board writeObjects:@[ file.toNSURL() ]];
    [board setString:file.toLocalFile().toNSString() forType:NSPasteboardTypeFileURL];
}

class GeneralPasteboard : public Pasteboard
{
public:
    void clear() override
    {
        m_written.reset();
        [NSPasteboard.generalPasteboard clearContents];
    }

    bool write(PasteboardContents contents) override
    {
        NSPasteboard *board = NSPasteboard.generalPasteboard;
        [board clearContents];
        bool wrote = contents.picture && writePicture(board, *contents.picture);
        if (contents.file) {
            writeFile(board, *contents.file);
            wrote = true;
        }
        m_written = std::move(contents);
        m_changeCount = board.changeCount;
        return wrote;
    }

    std::unique_ptr<DraggedFile> drag(const QUrl &file) override
    {
        auto drag = std::make_unique<DraggedFile>(file);
        m_dragged = drag.get();
        return drag;
    }

    /// The contents of a pasteboard can't be changed, so they are written again.
    void fileMoved(const QUrl &from, const QUrl &to) override
    {
        if (m_dragged && m_dragged->file() == from)
            m_dragged->setFile(to);
        if (!m_written)
            return;
        if (NSPasteboard.generalPasteboard.changeCount != m_changeCount) {
            m_written.reset();
        } else if (m_written->file == from) {
            m_written->file = to;
            write(*std::exchange(m_written, std::nullopt));
        }
    }

private:
    /// Ours until something else is put there, which changes the count.
    std::optional<PasteboardContents> m_written;
    NSInteger m_changeCount = 0;
    QPointer<DraggedFile> m_dragged;
};

} // namespace

std::unique_ptr<Pasteboard> makePasteboard()
{
    return std::make_unique<GeneralPasteboard>();
}
