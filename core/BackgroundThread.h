// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QPromise>

#include <chrono>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

/// One thread that does what it is given, one thing after the other.
///
/// What it is given may never end: a call on a dead network folder does not. The thread is then
/// left behind, with what it holds, and the program goes on and ends without it. So tasks own what
/// they use, or share it; none may refer to an object that can be gone.
class BackgroundThread
{
public:
    /// Starts no thread before there is something to do.
    /// @param longestWait how long the destructor waits for what is still to be done
    explicit BackgroundThread(std::chrono::milliseconds longestWait);
    ~BackgroundThread();
    Q_DISABLE_COPY_MOVE(BackgroundThread)

    /// Never waits. Any thread.
    void run(std::function<void()> task);

    /// The same for work with a result. Never waits. The future of work that is dropped is
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

    /// Waits until everything has been done that was given before, at most so long. False when
    /// that was not long enough. Any thread but this one.
    bool waitUntilIdle(std::chrono::milliseconds longestWait) const;

    /// How many tasks have not ended. Any thread.
    size_t tasksLeft() const;

private:
    struct Shared;

    void start();

    const std::chrono::milliseconds m_longestWait;
    const std::shared_ptr<Shared> m_shared;
};
