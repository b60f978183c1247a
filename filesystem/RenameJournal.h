// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/Descriptor.h"
#include "filesystem/OpenFile.h"

#include <QByteArray>

#include <memory>
#include <optional>
#include <system_error>
#include <vector>

/// The renames of one run of `velmora-name`, kept so that they can be undone: one file per run in
/// $XDG_STATE_HOME/velmora, private to the user. Each rename is on disk before it happens, so the
/// journal may contain a rename that did not happen, but never lacks one that did. A run locks its
/// journal for as long as it lives.
class RenameJournal
{
public:
    /// This many runs can be undone.
    static constexpr int runsKept = 100;

    struct Entry {
        FileIdentity identity;
        QByteArray oldPath; ///< absolute
        QByteArray newPath;
    };

    /// Creates the journal of a new run. Null, with `error` set, on failure.
    static std::unique_ptr<RenameJournal> begin(std::error_code &error);

    /// Opens the journal of the last run. Null without an error if there is none. Null with
    /// `std::errc::resource_unavailable_try_again` while that run is still in progress.
    static std::unique_ptr<RenameJournal> openLast(std::error_code &error);

    /// Removes the journal if it has no entries.
    ~RenameJournal();
    Q_DISABLE_COPY_MOVE(RenameJournal)

    /// Returns once the entry is on disk. After an error the journal is unchanged.
    std::error_code append(const Entry &entry);

    /// The entries in the order in which they were appended. An entry that a killed run did not
    /// complete is left out.
    std::vector<Entry> entries() const;

    /// Call it once all its renames have been undone. The journal can no longer be opened, but
    /// `hasRenamed` still knows the last one that ended so.
    void end();

    /// Whether a run has renamed this file, or undone that, and its content is still the same. Any
    /// thread; blocks for the disk.
    static bool hasRenamed(const FileIdentity &file);

    const QByteArray &path() const { return m_path; }

private:
    RenameJournal(QByteArray path, Descriptor file, qint64 size);

    QByteArray m_path;
    Descriptor m_file;
    qint64 m_size; ///< length of all entries in bytes
};
