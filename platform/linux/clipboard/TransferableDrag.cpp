// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/TransferableDrag.h"

#include "platform/linux/clipboard/FileTransfer.h"

#include <QTimer>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

/// Some programs ask the portal for the file only after they have reported the end of the drop.
constexpr auto timeAfterDrop = 5s;

} // namespace

TransferableDrag::TransferableDrag(FileTransferPortal &portal, const QUrl &file)
    : DraggedFile(file), m_transfer(std::make_shared<FileTransfer>(portal, file))
{
}

TransferableDrag::~TransferableDrag()
{
    QTimer::singleShot(timeAfterDrop, [kept = m_transfer] {});
}

void TransferableDrag::setFile(const QUrl &file)
{
    DraggedFile::setFile(file);
    m_transfer->setFile(file);
}

QStringList TransferableDrag::formats() const
{
    return m_transfer->isOffered() ? DraggedFile::formats() + FileTransfer::formats()
                                   : DraggedFile::formats();
}

QVariant TransferableDrag::retrieveData(const QString &mimeType, QMetaType type) const
{
    if (FileTransfer::formats().contains(mimeType))
        return m_transfer->key();
    return DraggedFile::retrieveData(mimeType, type);
}
