// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Pasteboard.h"
#include "platform/linux/clipboard/FileTransfer.h"

#include <QMimeData>

/// What one copy put on the clipboard. Each format is made on request, so that a file reference
/// always gives the file's current path. Main thread.
class ScreenshotMimeData : public QMimeData
{
public:
    ScreenshotMimeData(PasteboardContents contents, FileTransferPortal &portal);

    QStringList formats() const override;
    bool hasFormat(const QString &mimeType) const override { return formats().contains(mimeType); }

    void fileMoved(const QUrl &from, const QUrl &to);

protected:
    QVariant retrieveData(const QString &mimeType, QMetaType type) const override;

private:
    QVariant pictureData(const PasteboardContents::Picture &picture, const QString &mimeType) const;

    PasteboardContents m_contents;
    std::optional<FileTransfer> m_transfer; ///< of the file
    /// Encoded on the first request.
    mutable std::optional<QByteArray> m_png;
};
