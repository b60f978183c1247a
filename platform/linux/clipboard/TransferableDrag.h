// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DraggedFile.h"
#include "platform/linux/x11/EarlyDragAnswers.h"

#include <memory>

class FileTransfer;
class FileTransferPortal;

/// A drag that carries the file into sandboxes, too. Main thread.
class TransferableDrag : public DraggedFile
{
    Q_OBJECT
public:
    TransferableDrag(FileTransferPortal &portal, const QUrl &file);
    ~TransferableDrag() override;

    void setFile(const QUrl &file) override;
    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString &mimeType, QMetaType type) const override;

private:
    const std::shared_ptr<FileTransfer> m_transfer;
    const EarlyDragAnswers m_answers{*this};
};
