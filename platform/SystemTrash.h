// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <memory>
#include <optional>
#include <system_error>

/// The desktop's own trash. Any thread, one at a time; blocks.
class SystemTrash
{
public:
    struct Trashed {
        std::error_code error;
        /// Where the file is now. Absent on failure, or when the system does not report it.
        std::optional<QUrl> location;
    };

    virtual ~SystemTrash() = default;

    /// Moves the file to the trash. On failure the file stays where it was.
    virtual Trashed trash(const QUrl &file) = 0;

    /// Moves a file back out of this or another trash, never over an existing file, then removes
    /// the trash's record of it.
    virtual std::error_code restore(const QUrl &trashed, const QUrl &original) = 0;
};

std::unique_ptr<SystemTrash> makeSystemTrash();
