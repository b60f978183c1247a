// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/Descriptor.h"
#include "filesystem/OpenFile.h"

#include <QByteArray>

#include <memory>
#include <optional>
#include <system_error>
#include <vector>

/// What was renamed, so that it can be taken back: a file for each run of the command, in
/// $XDG_STATE_HOME/velmora, the user's alone. Each rename is on the disk before it happens, so the
/// journal may name one that did not happen, but never lacks one that did. A run holds a lock on
/// its journal for as long as it lives.
class RenameJournal
{
public:
    /// The last so many runs can be taken back.
    static constexpr int runsKept = 100;

    struct Entry {
        FileIdentity identity;
        QByteArray oldPath; ///< absolute
        QByteArray newPath;
    };

    /// Begins the journal of a new run. Null, and the error, when that is not possible.
    static std::unique_ptr<RenameJournal> begin(std::error_code &error);

    /// Opens the last run's. Null without an error where there is none; with
    /// `std::errc::resource_unavailable_try_again` while that run is still at work.
    static std::unique_ptr<RenameJournal> openLast(std::error_code &error);

    /// A journal without entries is removed.
    ~RenameJournal();
    Q_DISABLE_COPY_MOVE(RenameJournal)

    /// Returns when the entry is on the disk. After an error the journal is as it was before.
    std::error_code append(const Entry &entry);

    /// What was appended, in that order. What a dying run did not finish writing is left out.
    std::vector<Entry> entries() const;

    /// When all has been taken back.
    void remove();

    const QByteArray &path() const { return m_path; }

private:
    RenameJournal(QByteArray path, Descriptor file, qint64 size);

    QByteArray m_path;
    Descriptor m_file;
    qint64 m_size; ///< bytes that hold entries
};
