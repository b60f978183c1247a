// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/Descriptor.h"
#include "platform/linux/x11/LaunchToken.h"

#include <QLockFile>
#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <optional>

/// Keeps to one instance without a session bus: a lock that only one process of the user can hold,
/// and a socket on which that process hears from others. Main thread.
class ApplicationOnSocket : public QObject
{
    Q_OBJECT
public:
    enum class Claim {
        Ours,       ///< the lock is this process's until it ends
        Theirs,     ///< another process has it and has been told to come to the front
        Impossible, ///< there is no place for a lock that is the user's alone
    };

    /// Blocks for two seconds at most when the other process runs but does not answer.
    Claim claim(const LaunchToken &token);

Q_SIGNALS:
    void activated(const LaunchToken &token);

private:
    void listen(const QString &socketPath);
    void accept();

    std::unique_ptr<QLockFile> m_lock;
    std::optional<Descriptor> m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
