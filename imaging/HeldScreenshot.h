// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/OpenFile.h"

#include <QUrl>

#include <atomic>
#include <memory>
#include <mutex>

/// Identifies the file of a held screenshot, also for those that no longer hold it. Any thread.
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

/// A screenshot file that can still be read after it was renamed. Any thread.
///
/// It is kept open as long as few others are. Beyond that only its identity is kept, and the file
/// is looked for under its old name and then in the folder. If it is not there because another file
/// has taken its name, that file is the screenshot, which was rewritten.
class HeldScreenshot
{
public:
    /// The most files that are kept open.
    static constexpr int maximumOpen = 128;

    /// The number of files kept open, shared by all that are subject to the same bound.
    using OpenCount = std::shared_ptr<std::atomic_int>;

    /// Null when there is no regular file.
    static std::shared_ptr<HeldScreenshot> hold(const QUrl &file, const OpenCount &openCount);
    ~HeldScreenshot();
    Q_DISABLE_COPY_MOVE(HeldScreenshot)

    /// As it was when the hold began.
    const FileIdentity &identity() const { return m_identity; }

    /// The same, but that of the newer file once the screenshot is found to be rewritten.
    std::shared_ptr<const HeldIdentity> currentIdentity() const { return m_current; }

    /// The file, open for reading; null when it is gone or may not be read. A different file when
    /// it was rewritten. Blocks.
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
