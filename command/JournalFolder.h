// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <system_error>
#include <vector>

/// The folder of the rename journals, which are numbered.
class JournalFolder
{
public:
    JournalFolder();

    /// Makes it, with the folders above, for the user alone.
    std::error_code make() const;

    /// Of the journals that are there, sorted.
    std::vector<int> numbers() const;

    QByteArray pathOf(int number) const;

    /// Returns when the names in it are on the disk.
    std::error_code flush() const;

    /// Removes the journals of runs that have ended, up to but without this number.
    void removeOlderThan(int number) const;

private:
    QByteArray m_path;
};
