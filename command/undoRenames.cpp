// SPDX-License-Identifier: MIT
#include "command/IndexUpdate.h"
#include "command/Interruption.h"
#include "command/PictureReader.h"
#include "command/Report.h"
#include "command/exitStatus.h"
#include "command/filePaths.h"
#include "command/runs.h"
#include "filesystem/RenameJournal.h"
#include "filesystem/moveWithinFileSystem.h"

#include <algorithm>

namespace
{

using Entry = RenameJournal::Entry;

/// Whether a file is the one that was renamed, even if it was changed since. Compares no device
/// numbers, because they may change. Where the file system does not record when a file was created,
/// its serial number alone is not enough: it may have been reused.
bool isFileOf(const Entry &entry, const std::optional<FileIdentity> &found)
{
    if (!found)
        return false;
    const FileIdentity &then = entry.identity;
    const bool isSame = then.made != 0 && found->serial == then.serial && found->made == then.made;
    return isSame || (found->size == then.size && found->modified == then.modified);
}

/// Undoes the renames of a journal, the last one first.
class Undoing
{
public:
    Undoing(std::vector<Entry> entries, Report &report)
        : m_entries(std::move(entries)), m_report(report)
    {
    }

    /// False if a signal or a closed output ended it early.
    bool run()
    {
        return std::all_of(m_entries.rbegin(), m_entries.rend(), [this](const Entry &entry) {
            return Interruption::signal() == 0 && takeBack(entry);
        });
    }

    /// Some files are still where they were moved to, so undoing them can be tried again.
    bool mayBeTriedAgain() const { return m_mayBeTriedAgain; }

private:
    bool takeBack(const Entry &entry)
    {
        if (!isFileOf(entry, identityOf(entry.newPath)))
            return isWhereItWas(entry) || m_report.failure(entry.newPath, "is no longer there");
        QByteArray back;
        auto error = std::make_error_code(std::errc::file_exists);
        for (int counter = 1; error == std::errc::file_exists; ++counter) {
            back = FilePaths::numbered(entry.oldPath, counter);
            error = moveWithinFileSystem(entry.newPath.constData(), back.constData());
        }
        if (!error) {
            m_index.add(back);
            return m_report.name(entry.newPath, back, Report::Renamed::Yes);
        }
        m_mayBeTriedAgain = true;
        return m_report.failure(entry.newPath,
                                "can't be renamed: " + QByteArray::fromStdString(error.message()));
    }

    /// The rename did not happen, or happened under another name, or was undone before a kill.
    bool isWhereItWas(const Entry &entry) const
    {
        return isFileOf(entry, identityOf(entry.oldPath)) ||
               std::any_of(m_entries.begin(), m_entries.end(), [&](const Entry &other) {
                   return other.oldPath == entry.oldPath && other.newPath != entry.newPath;
               });
    }

    const std::vector<Entry> m_entries;
    Report &m_report;
    IndexUpdate m_index;
    bool m_mayBeTriedAgain = false;
};

} // namespace

int Runs::undo(const CommandOptions &options, Console &console)
{
    Report report(console, options.format);
    std::error_code error;
    const std::unique_ptr<RenameJournal> journal = RenameJournal::openLast(error);
    if (!journal) {
        if (error == std::errc::resource_unavailable_try_again)
            report.note("another velmora-name is still renaming; try again later");
        else if (error)
            report.note("the journal can't be read: " + QByteArray::fromStdString(error.message()));
        else
            report.note("there is nothing to undo");
        return error ? ExitStatus::someFailed : ExitStatus::done;
    }
    Interruption::expect();
    Undoing undoing(journal->entries(), report);
    const bool isDone = undoing.run();
    if (isDone && !undoing.mayBeTriedAgain())
        journal->end();
    if (!isDone)
        report.note("stopped early; run --undo again to continue");
    if (Interruption::signal() != 0 && !isDone)
        return ExitStatus::signalled + Interruption::signal();
    return !isDone || report.hasFailures() ? ExitStatus::someFailed : ExitStatus::done;
}
