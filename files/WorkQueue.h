// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

/// Runs jobs one after the other on a background thread, in the order in which they were added, and
/// runs the outcome of each on the owner's thread.
class WorkQueue : public QObject
{
    Q_OBJECT
public:
    /// What to do with the result, on the owner's thread.
    using Outcome = std::function<void()>;

    explicit WorkQueue(QObject *parent = nullptr);

    /// Drops jobs that have not begun, and all outcomes. Waits briefly for the running job; a job
    /// that hangs (on a dead network mount) is abandoned with its thread.
    ~WorkQueue() override;

    /// `work` must not throw. Its captures are destroyed on the owner's thread.
    void add(std::function<Outcome()> work);

    /// Waits at most `limit` until all jobs are done and their outcomes have run. False if the time
    /// was not enough.
    bool finish(std::chrono::milliseconds limit);

private:
    struct Shared;

    void deliver();

    std::shared_ptr<Shared> m_shared;
    BackgroundThread m_thread;
};
