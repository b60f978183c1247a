// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

/// The system's notifications about changes in one folder. Lives on one thread with an event loop:
/// created, armed and listened to there. Holds no descriptor once disarmed or destroyed.
class FolderEvents : public QObject
{
    Q_OBJECT
public:
    /// Which changes in the folder are reported.
    enum class Coverage {
        Nothing, ///< the folder can't be watched now
        Some,    ///< changes by other machines, or on the path to the folder, may go unreported
        All,     ///< every change made to an entry by its name in this folder is reported, and
                 ///< every change after which the path may lead elsewhere
        Missing, ///< there is no folder; it is reported when one appears
    };

    /// Watches `folder` instead of the previous one, and returns what will be reported. To get a
    /// baseline, list the folder after this call, so that no change is missed in between.
    virtual Coverage arm(const QString &folder) = 0;
    virtual void disarm() = 0;

Q_SIGNALS:
    /// Something happened to the entries with these names (created, written, touched, renamed,
    /// linked, deleted). A name may be reported more than once and need not exist any more.
    void entriesChanged(const QStringList &names);

    /// Events were lost, the folder's own attributes changed, or the system's clock was set: only a
    /// new listing shows what has changed.
    void listAgain();

    /// The watched folder was deleted, moved away or unmounted, or its path may now lead to another
    /// one. Nothing more is reported until the next arm().
    void folderGone();
};

std::unique_ptr<FolderEvents> makeFolderEvents();
