// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <atomic>
#include <future>
#include <memory>

/// The portal of the desktop (org.freedesktop.portal.FileTransfer) through which programs in a
/// sandbox get the files that others put on the clipboard or drag to them. A transfer has a key.
/// Whoever gets that key may read the file, any number of times, until the transfer is stopped or
/// this program ends.
///
/// The portal is followed on the bus and never started from here. Flatpak and Snap start it before
/// they start a program, so where it does not run there is nobody to receive.
///
/// All calls are made on a thread of their own, since the file has to be opened for them, and both
/// its disk and the portal may be slow. Main thread; nothing here blocks.
class FileTransferPortal : public QObject
{
    Q_OBJECT
public:
    FileTransferPortal();

    /// False until the bus has answered, and when the program is about to end.
    bool isRunning() const { return m_isRunning; }

    struct Transfer {
        std::promise<QString> result;
        /// Empty if the portal or the disk has refused.
        const std::shared_future<QString> key = result.get_future().share();
        std::atomic_bool isWanted = true;
    };
    using TransferPointer = std::shared_ptr<Transfer>;

    TransferPointer start(const QUrl &file);
    void stop(const TransferPointer &transfer);

Q_SIGNALS:
    /// The portal has started or ended. Transfers from before are void.
    void changed();

private:
    void setRunning(bool isRunning);

    bool m_isRunning = false;
    BackgroundThread m_thread;
};
