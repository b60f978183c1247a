// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

/// The system's notice of what happens in one folder. Lives on one thread with an event loop, on
/// which it is made, armed and heard. Released or disarmed, it holds no descriptor.
class FolderEvents : public QObject
{
    Q_OBJECT
public:
    /// How much of what happens in the folder is told.
    enum class Coverage {
        Nothing, ///< the folder can't be watched now
        Some,    ///< changes made by other machines, or on the way to the folder, may go untold
        All,     ///< every change that is made to an entry by its name in this folder is told, and
                 ///< every one after which the path may lead elsewhere
        Missing, ///< no folder is there; it is told when one comes
    };

    /// Watches `folder`, in place of whatever was watched before, and says what will be told.
    /// Whoever needs a baseline lists the folder after this call, so that nothing falls between.
    virtual Coverage arm(const QString &folder) = 0;
    virtual void disarm() = 0;

Q_SIGNALS:
    /// Something happened to the entries of these names (created, written, touched, renamed,
    /// linked, deleted). A name may be told more than once and need not exist any more.
    void entriesChanged(const QStringList &names);

    /// Events were lost, the folder's own attributes changed, or the system's clock was set: only a
    /// fresh listing tells.
    void listAgain();

    /// The watched folder was deleted, moved away or unmounted, or the path may lead to another
    /// one now. Nothing more is told until the next arm().
    void folderGone();
};

std::unique_ptr<FolderEvents> makeFolderEvents();
