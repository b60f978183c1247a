// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>

/// Tells whether any process still has a file open for writing, so that a half-written picture is
/// not read. Any thread; returns at once.
class FileWriters
{
public:
    enum class Answer {
        None,    ///< the last writer has closed the file
        Some,    ///< a process has the file open for writing
        Unknown, ///< this file system, or the file's owner, does not allow the check
    };

    virtual ~FileWriters() = default;

    /// @param descriptor the file, open for reading
    virtual Answer writersOf(int descriptor) = 0;
};

std::unique_ptr<FileWriters> makeFileWriters();
