// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>

/// Tells whether somebody still has a file open for writing, so that nobody reads a half-written
/// picture. Any thread; returns at once.
class FileWriters
{
public:
    enum class Answer {
        None,    ///< the last writer has closed the file
        Some,    ///< somebody has the file open for writing
        Unknown, ///< this file system or this file's owner does not let us ask
    };

    virtual ~FileWriters() = default;

    /// @param descriptor the file, open for reading
    virtual Answer writersOf(int descriptor) = 0;
};

std::unique_ptr<FileWriters> makeFileWriters();
