// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// A folder whose files are private to their owner. All calls block for the disk. Any thread.
class PrivateFolder
{
public:
    explicit PrivateFolder(const QString &path);

    /// Creates the folder and its missing parents. False on failure.
    bool make() const;

    /// Removes all other users' permissions from the folder and from the file of that name, and
    /// removes what a killed writer of the file left behind.
    void tidy(const QString &name) const;

    /// Replaces the file's content in one step and flushes it to the disk: there is always the
    /// complete old file or the complete new one. Does not replace anything but a file.
    ///
    /// QSaveFile gives its temporary file a random name: what a killed writer leaves behind could
    /// not be told from a file of the user's.
    bool replace(const QString &name, const QByteArray &content) const;

    /// Renames whatever has that name to a free name.
    bool setAside(const QString &name) const;

    /// An advisory lock on the folder. The system releases it when its holder dies. After waiting
    /// for a second the caller goes on without it, since its holder may be stopped.
    ///
    /// QLockFile leaves a file behind when its holder is killed, and whether that file is stale can
    /// only be guessed. Such a file once held up a start for half a minute.
    class Lock
    {
    public:
        explicit Lock(const PrivateFolder &folder);
        ~Lock();
        Q_DISABLE_COPY_MOVE(Lock)

    private:
        int m_folder;
    };

private:
    QByteArray pathOf(const QString &name) const;
    QByteArray draftOf(const QString &name) const;

    QByteArray m_path;
};
