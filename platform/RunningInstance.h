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
    /// True when this process is now the running instance. False when another process is: it has
    /// been asked to reopen, and this process should end. Blocks for two seconds at most. An
    /// instance that does not answer is taken to be busy. It gets the request later and stays the
    /// running one, because two processes working on one folder would be worse than a window that
    /// does not appear.
    virtual bool claim() = 0;

Q_SIGNALS:
    /// The user has opened the program again.
    void reopened();

    /// The user has chosen one of the program's actions from outside, for example from a dock:
    /// "recent", "undo", "instant", "reveal" or "quit".
    void actionRequested(const QString &name);
};

std::unique_ptr<RunningInstance> makeRunningInstance();
