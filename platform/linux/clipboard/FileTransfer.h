// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/clipboard/FileTransferPortal.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QUrl>

/// The part of clipboard or drag data through which a program in a sandbox gets the file: the key
/// of a transfer, which lasts as long as this object. While the portal does not run, it carries
/// nothing.
///
/// The key is asked for at once, not when a program wants it. Qt answers such a request before it
/// handles any other event, so the main thread would have to wait for the portal. GTK, which can
/// answer later, asks late; KDE's library asks early, too. If a program is so quick that there is
/// no key yet, the main thread waits for at most 16 ms.
///
/// A transfer names the file by the path that it had when the transfer was started. If the file
/// moves, another one replaces it. Main thread.
class FileTransfer : public QObject
{
public:
    FileTransfer(FileTransferPortal &portal, const QUrl &file);
    ~FileTransfer() override;

    /// The formats that carry the key.
    static QStringList formats();

    /// False without the portal, and once it has refused.
    bool isOffered() const;

    /// Empty if there is no transfer.
    QByteArray key() const;

    /// The file has moved.
    void setFile(const QUrl &file);

private:
    void startAgain();
    void stop();

    const QPointer<FileTransferPortal> m_portal;
    QUrl m_file;
    FileTransferPortal::TransferPointer m_transfer;
};
