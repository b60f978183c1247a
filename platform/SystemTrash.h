#pragma once

#include <QUrl>

#include <memory>
#include <optional>
#include <system_error>

/// The desktop's own trash. Main thread; blocks.
class SystemTrash
{
public:
    struct Trashed {
        std::error_code error;
        /// Where the file now lies. Absent on failure, and where the system does not say.
        std::optional<QUrl> location;
    };

    virtual ~SystemTrash() = default;

    /// Moves the file there. On failure the file stands where it stood.
    virtual Trashed trash(const QUrl &file) = 0;

    /// Moves a file back out of a trash, this one or another, never over an existing file, and
    /// then removes what the trash noted of it.
    virtual std::error_code restore(const QUrl &trashed, const QUrl &original) = 0;
};

std::unique_ptr<SystemTrash> makeSystemTrash();
