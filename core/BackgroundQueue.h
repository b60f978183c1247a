// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QPromise>
#include <QThreadPool>

#include <chrono>
#include <memory>
#include <type_traits>
#include <utility>

/// Runs calls that may take long, or never return (a folder on a dead network mount), one after
/// the other on a thread of their own. What hangs holds up the other work of this queue and
/// nothing else: work that must not wait for it takes another queue.
///
/// Used on one thread. Work may not refer to objects that end before the queue does.
class BackgroundQueue
{
public:
    /// The end of a queue waits this long for the work that runs, and then leaves it behind.
    static constexpr std::chrono::seconds longestWait{1};

    BackgroundQueue();
    /// Drops what has not begun; its futures are cancelled.
    ~BackgroundQueue();
    Q_DISABLE_COPY_MOVE(BackgroundQueue)

    /// Runs `work` after what was asked for before.
    template <typename Work>
    QFuture<std::invoke_result_t<Work>> run(Work work)
    {
        using Result = std::invoke_result_t<Work>;
        const auto promise = std::make_shared<QPromise<Result>>();
        const QFuture<Result> future = promise->future();
        promise->start();
        m_pool->start([promise, work = std::move(work)]() mutable {
            if constexpr (std::is_void_v<Result>)
                work();
            else
                promise->addResult(work());
            promise->finish();
        });
        return future;
    }

    /// Drops what has not begun, and leaves what runs to itself, its thread included: what is asked
    /// for from now on need not wait for it. Returns at once.
    void leaveBehind();

private:
    static std::unique_ptr<QThreadPool> makePool();

    std::unique_ptr<QThreadPool> m_pool;
};
