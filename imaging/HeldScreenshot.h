// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/OpenFile.h"

#include <QUrl>

#include <atomic>
#include <memory>
#include <mutex>

/// Which file a held screenshot is; known also to those who do not hold it any more. Any thread.
class HeldIdentity
{
public:
    explicit HeldIdentity(const FileIdentity &identity) : m_identity(identity) {}

    FileIdentity current() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_identity;
    }
    void set(const FileIdentity &identity)
    {
        const std::scoped_lock lock(m_mutex);
        m_identity = identity;
    }

private:
    mutable std::mutex m_mutex;
    FileIdentity m_identity;
};

/// A screenshot file that can still be read when it has been renamed since. Any thread.
///
/// It is kept open as long as few others are; beyond that only its identity is kept, and the file
/// is looked for under its old name and then in the folder. When it is gone from there because
/// another file has taken its name, that one is the screenshot: it was written anew.
class HeldScreenshot
{
public:
    /// How many files are kept open at most.
    static constexpr int maximumOpen = 128;

    /// The number of files that are kept open, common to all that share the bound.
    using OpenCount = std::shared_ptr<std::atomic_int>;

    /// Null when there is no regular file.
    static std::shared_ptr<HeldScreenshot> hold(const QUrl &file, const OpenCount &openCount);
    ~HeldScreenshot();
    Q_DISABLE_COPY_MOVE(HeldScreenshot)

    /// As it was when the hold began.
    const FileIdentity &identity() const { return m_identity; }

    /// The same, but of the newer file from when it is found to be written anew.
    std::shared_ptr<const HeldIdentity> currentIdentity() const { return m_current; }

    /// The file, open for reading; null when it is gone or may not be read. Another one than before
    /// where it was written anew. Blocks.
    std::shared_ptr<OpenFile> open() const;

private:
    HeldScreenshot(const QString &path, const FileIdentity &identity, const OpenCount &openCount);
    std::shared_ptr<OpenFile> openIfSame(const QString &path) const;
    std::shared_ptr<OpenFile> openInFolder() const;

    const FileIdentity m_identity;
    const QString m_firstPath;
    OpenCount m_openCount;
    const std::shared_ptr<HeldIdentity> m_current;
    mutable std::mutex m_mutex;
    // Guarded by the mutex:
    mutable QString m_path;                   ///< where the file was last seen
    mutable std::shared_ptr<OpenFile> m_open; ///< null beyond the bound
};
