// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// A folder whose files are their owner's alone. All calls block for the disk. Any thread.
class PrivateFolder
{
public:
    explicit PrivateFolder(const QString &path);

    /// Makes the folder and those above it where they are missing. False where that can't be.
    bool make() const;

    /// Takes from everybody else what they may do with the folder and with the file of that name,
    /// and removes what a killed writer of the file has left.
    void tidy(const QString &name) const;

    /// Gives the file of that name this content, and the disk time to keep it, in one step: there
    /// is the old file or the new one, whole. What stands there and is no file is not replaced.
    bool replace(const QString &name, const QByteArray &content) const;

    /// Gives whatever has that name another one that nothing has.
    bool setAside(const QString &name) const;

    /// While it lives nobody else who asks for it has it. The system frees it when its holder dies.
    /// Who can't have it within a second goes on without, since who holds it may be stopped.
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
