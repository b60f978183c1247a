// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

/// Does work aside, one piece after the other in the order in which it was asked for, and hands
/// each outcome back to the thread of its owner.
class WorkQueue : public QObject
{
    Q_OBJECT
public:
    /// What is to be done with the outcome, in the owner's thread.
    using Outcome = std::function<void()>;

    explicit WorkQueue(QObject *parent = nullptr);

    /// Work that has not begun is dropped, and no outcome is told any more. Waits a moment for what
    /// is under way; work that hangs (a dead network disk) is left behind with its thread.
    ~WorkQueue() override;

    /// `work` must not fail by exception. What it has captured is released in the owner's thread.
    void add(std::function<Outcome()> work);

    /// Waits until everything is done and told, for at most `limit`. False when it was not.
    bool finish(std::chrono::milliseconds limit);

private:
    struct Shared;

    void tell();

    std::shared_ptr<Shared> m_shared;
    BackgroundThread m_thread;
};
