// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

class DraggedFile;

/// What one copy puts on the clipboard.
struct PasteboardContents {
    /// The kinds of bytes that a picture file holds.
    enum class ImageType { Png, Jpeg, Heic, Tiff };

    struct Picture {
        /// The file's own bytes under their type; absent when the file could not be read.
        std::optional<QByteArray> bytes;
        ImageType type = ImageType::Png;
        /// The decoded picture, for programs that can't read `type`. Called at most once, when a
        /// program asks for it; returns a null image when decoding fails.
        std::function<QImage()> image;
    };

    std::optional<Picture> picture;
    /// The file reference and, as text, its plain path.
    std::optional<QUrl> file;
};

/// The desktop's clipboard. Main thread.
class Pasteboard
{
public:
    virtual ~Pasteboard() = default;

    virtual void clear() = 0;

    /// Replaces the clipboard's contents. False when the desktop has not taken them.
    virtual bool write(PasteboardContents contents) = 0;

    /// What a drag of this file carries.
    virtual std::unique_ptr<DraggedFile> drag(const QUrl &file) = 0;

    /// The file has moved: contents of ours, and the last drag, that name its old path name the new
    /// one from now on. Otherwise nothing happens.
    virtual void fileMoved(const QUrl &from, const QUrl &to) = 0;
};

std::unique_ptr<Pasteboard> makePasteboard();
