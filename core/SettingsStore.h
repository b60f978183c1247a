// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"

#include <QStringList>
#include <QVariant>

#include <atomic>
#include <memory>

/// The values of one domain of preferences, each a string or a list of strings. Any thread.
///
/// The values are kept in memory. The store's own thread reads and writes them, so callers never
/// wait for a slow disk. Changes by another process are still seen at the next read, because each
/// read makes the thread ask the file system for changes. An ordinary disk answers at once; with a
/// slow one, the change is seen once it has been read.
class SettingsStore
{
public:
    /// Starts to read the domain.
    explicit SettingsStore(const QString &domain);
    /// Waits until all changes are stored, but gives up on a disk that does not answer.
    ~SettingsStore();

    /// The file that holds the domain.
    QString fileName() const;

    /// Invalid if there is no such value, or if the disk has not answered yet. Takes a few
    /// milliseconds at most, and usually a few hundredths of one.
    QVariant value(const QString &key) const;
    QStringList allKeys() const;

    /// Visible to all reads from now on, and stored soon after. The value is a string, a list of
    /// strings, or a boolean, which is stored as the string "true" or "false".
    void setValue(const QString &key, const QVariant &value);
    void remove(const QString &key);
    /// Waits until the domain has been read, so that it knows which keys to remove.
    void clear();

    /// Reads what another process may have stored, however long that takes. Do not call it on a
    /// thread that must not block.
    void readAgain() const;

    /// Whether the domain is read before the time is up.
    bool waitUntilRead(std::chrono::milliseconds longestWait) const;

    /// Whether all changes are stored before the time is up.
    bool waitUntilStored(std::chrono::milliseconds longestWait) const;

private:
    struct State;

    void lookAgain() const;
    void askForChanges() const;

    const std::shared_ptr<State> m_state;
    mutable BackgroundThread m_thread;
    mutable std::atomic<std::chrono::steady_clock::time_point> m_patientFrom{};
};
