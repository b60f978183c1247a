// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/Descriptor.h"
#include "platform/linux/x11/LaunchToken.h"

#include <QLockFile>
#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <optional>

/// Keeps to one instance without a session bus: with a lock that only one of the user's processes
/// can hold, and a socket on which other processes reach that one. Main thread.
class ApplicationOnSocket : public QObject
{
    Q_OBJECT
public:
    enum class Claim {
        Ours,       ///< this process holds the lock until it ends
        Theirs,     ///< another process holds it and was asked to come to the front
        Impossible, ///< there is no place for a lock that only this user can write to
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
