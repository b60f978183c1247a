// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QPromise>

#include <chrono>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

/// One thread that runs its tasks one after the other.
///
/// A task may never return, for example a call on a dead network mount. The thread is then
/// abandoned with everything it holds, and the program goes on, and exits, without it. So tasks
/// must own or share what they use, and must not refer to an object that may be destroyed before
/// them.
class BackgroundThread
{
public:
    /// The thread starts with the first task.
    /// @param longestWait how long the destructor waits for unfinished tasks
    explicit BackgroundThread(std::chrono::milliseconds longestWait);
    ~BackgroundThread();
    Q_DISABLE_COPY_MOVE(BackgroundThread)

    /// Never blocks. Any thread.
    void run(std::function<void()> task);

    /// Like run(), for work with a result. Never blocks. If the work is dropped, its future is
    /// cancelled.
    template <typename Work>
    QFuture<std::invoke_result_t<Work>> ask(Work work)
    {
        using Result = std::invoke_result_t<Work>;
        const auto promise = std::make_shared<QPromise<Result>>();
        promise->start();
        run([promise, work = std::move(work)] {
            promise->addResult(work());
            promise->finish();
        });
        return promise->future();
    }

    /// Waits at most `longestWait` until all earlier tasks are done, however many are added
    /// meanwhile. False if they are not. Any thread but the background one.
    bool waitForTasks(std::chrono::milliseconds longestWait) const;

    /// The number of unfinished tasks. Any thread.
    size_t tasksLeft() const;

    /// Whether an abandoned thread is still running. It may be using globals of libraries, which
    /// std::exit() destroys. Any thread.
    static bool isAnyAbandoned();

private:
    struct Shared;

    void start();

    const std::chrono::milliseconds m_longestWait;
    const std::shared_ptr<Shared> m_shared;
};
