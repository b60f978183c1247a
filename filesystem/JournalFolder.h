// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <system_error>
#include <vector>

/// The folder that contains the numbered rename journals.
class JournalFolder
{
public:
    JournalFolder();

    /// Creates the folder and its missing parents, accessible to the user only.
    std::error_code make() const;

    /// The numbers of the existing journals, sorted.
    std::vector<int> numbers() const;

    QByteArray pathOf(int number) const;

    /// Where the last journal is kept whose renames have all been undone.
    QByteArray pathOfUndone() const { return m_path + "/undone.journal"; }

    /// Flushes the names in the folder to the disk.
    std::error_code flush() const;

    /// Removes the journals with lower numbers, except those of runs that have not ended.
    void removeOlderThan(int number) const;

private:
    QByteArray m_path;
};
