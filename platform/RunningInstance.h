// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <memory>

/// Keeps one copy of the program running for a user's session. Main thread.
class RunningInstance : public QObject
{
    Q_OBJECT
public:
    /// True when this process is now the one that runs. False when another one is: it has then been
    /// asked to reopen, and this process should end. Blocks for two seconds at most. A process that
    /// runs but does not answer is busy; it learns of this later and stays the running one, because
    /// two processes working on one folder would be worse than a window that does not come up.
    virtual bool claim() = 0;

Q_SIGNALS:
    /// The user has opened the program again.
    void reopened();

    /// The user has chosen one of the program's actions from outside, for instance from a dock: one
    /// of "recent", "undo", "instant", "reveal", "quit".
    void actionRequested(const QString &name);
};

std::unique_ptr<RunningInstance> makeRunningInstance();
