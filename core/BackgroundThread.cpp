// SPDX-License-Identifier: MIT
#include "core/BackgroundThread.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace
{

std::atomic_int abandoned = 0;

} // namespace

/// Shared with the thread, which may outlive its owner.
struct BackgroundThread::Shared {
    std::mutex lock;
    std::condition_variable changed;
    std::deque<std::function<void()>> tasks; ///< the first one is running
    size_t done = 0;
    bool isStarted = false;
    bool mayEnd = false;
    bool isAbandoned = false;

    void work()
    {
        std::unique_lock locker(lock);
        for (;;) {
            changed.wait(locker, [this] { return mayEnd || !tasks.empty(); });
            if (tasks.empty())
                break;
            const std::function<void()> task = std::move(tasks.front());
            locker.unlock();
            task();
            locker.lock();
            tasks.pop_front();
            ++done;
            changed.notify_all();
        }
        if (isAbandoned)
            --abandoned;
    }
};

BackgroundThread::BackgroundThread(std::chrono::milliseconds longestWait)
    : m_longestWait(longestWait), m_shared(std::make_shared<Shared>())
{
}

BackgroundThread::~BackgroundThread()
{
    waitForTasks(m_longestWait);
    const std::scoped_lock locker(m_shared->lock);
    m_shared->mayEnd = true;
    if (!m_shared->tasks.empty()) {
        m_shared->isAbandoned = true;
        ++abandoned;
    }
    // Tasks that have not begun are no longer needed.
    if (m_shared->tasks.size() > 1)
        m_shared->tasks.erase(m_shared->tasks.begin() + 1, m_shared->tasks.end());
    m_shared->changed.notify_all();
}

void BackgroundThread::run(std::function<void()> task)
{
    const std::scoped_lock locker(m_shared->lock);
    m_shared->tasks.push_back(std::move(task));
    m_shared->changed.notify_all();
    if (!m_shared->isStarted)
        start();
}

bool BackgroundThread::waitForTasks(std::chrono::milliseconds longestWait) const
{
    const std::shared_ptr<Shared> shared = m_shared;
    std::unique_lock locker(shared->lock);
    const size_t last = shared->done + shared->tasks.size();
    return shared->changed.wait_for(locker, longestWait,
                                    [&shared, last] { return shared->done >= last; });
}

size_t BackgroundThread::tasksLeft() const
{
    const std::scoped_lock locker(m_shared->lock);
    return m_shared->tasks.size();
}

bool BackgroundThread::isAnyAbandoned()
{
    return abandoned > 0;
}

/// Detached, since a task may never return. waitForTasks() waits for the tasks, not for the thread.
void BackgroundThread::start()
{
    m_shared->isStarted = true;
    std::thread([shared = m_shared] { shared->work(); }).detach();
}
