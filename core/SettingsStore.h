// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"

#include <QStringList>
#include <QVariant>

#include <atomic>
#include <memory>

/// The values of one domain of preferences, each a string or a list of strings. Any thread.
///
/// They are in memory: they are read, and written, by a thread of the store's own, and nobody waits
/// for the disk. Yet a change that another process has made is seen at the next read: each read has
/// the thread ask the file system whether there is one. An ordinary disk answers at once; from one
/// that does not, the change is seen as soon as it has been read.
class SettingsStore
{
public:
    /// Begins to read the domain.
    explicit SettingsStore(const QString &domain);
    /// Waits until what was set is stored, but not for a disk that does not answer.
    ~SettingsStore();

    /// The file that holds the domain.
    QString fileName() const;

    /// Invalid where there is none, and where the disk has not yet told. Takes some milliseconds at
    /// most, and some hundredths of one as a rule.
    QVariant value(const QString &key) const;
    QStringList allKeys() const;

    /// Seen by all reads from now on, and stored soon after. A string, a list of strings, or a
    /// boolean, which is the string "true" or "false".
    void setValue(const QString &key, const QVariant &value);
    void remove(const QString &key);
    /// Waits until it is known what there is to remove.
    void clear();

    /// Reads what another process may have stored, however long that takes. Any thread but one that
    /// somebody waits for.
    void readAgain() const;

    /// Whether the domain has been read, or has been within this time.
    bool waitUntilRead(std::chrono::milliseconds longestWait) const;

    /// Whether all that was set is stored, or has been within this time.
    bool waitUntilStored(std::chrono::milliseconds longestWait) const;

private:
    struct State;

    void lookAgain() const;
    void askForChanges() const;

    const std::shared_ptr<State> m_state;
    mutable BackgroundThread m_thread;
    mutable std::atomic<std::chrono::steady_clock::time_point> m_patientFrom{};
};
