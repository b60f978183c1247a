// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

class QThread;

/// Does work aside, in one thread of its own, in the order in which it was asked for. Lives on the
/// thread of its owner.
class WorkQueue : public QObject
{
    Q_OBJECT
public:
    /// What is to be done with the outcome, in the owner's thread.
    using Outcome = std::function<void()>;

    explicit WorkQueue(const QString &threadName, QObject *parent = nullptr);

    /// Work that has not begun is dropped, and no outcome is told any more. Waits a moment for what
    /// is under way; work that hangs (a dead network disk) is left behind with its thread.
    ~WorkQueue() override;

    /// `work` must not fail by exception. What it has captured is released in the owner's thread.
    void add(std::function<Outcome()> work);

    /// Waits until everything is done and told, for at most `limit`. False when it was not.
    bool finish(std::chrono::milliseconds limit);

private:
    struct Shared;

    static void work(const std::shared_ptr<Shared> &shared);
    void tell();

    std::shared_ptr<Shared> m_shared;
    QThread *m_thread;
};
