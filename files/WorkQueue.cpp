// SPDX-License-Identifier: MIT
#include "files/WorkQueue.h"

#include <QDeadlineTimer>

#include <deque>
#include <mutex>

using namespace std::chrono_literals;

namespace
{

/// For the running job when the queue is destroyed.
constexpr auto longestWaitForThread = 1s;

struct Job {
    std::function<WorkQueue::Outcome()> work;
    WorkQueue::Outcome outcome;
};

} // namespace

struct WorkQueue::Shared {
    std::mutex mutex;
    // Both guarded by the mutex.
    std::deque<std::shared_ptr<Job>> done;
    /// Null once the queue is destroyed.
    WorkQueue *owner = nullptr;

    bool isWanted()
    {
        const std::scoped_lock lock(mutex);
        return owner != nullptr;
    }
};

WorkQueue::WorkQueue(QObject *parent)
    : QObject(parent), m_shared(std::make_shared<Shared>()), m_thread(longestWaitForThread)
{
    m_shared->owner = this;
}

WorkQueue::~WorkQueue()
{
    const std::scoped_lock lock(m_shared->mutex);
    m_shared->owner = nullptr;
}

void WorkQueue::add(std::function<Outcome()> work)
{
    const auto job = std::make_shared<Job>(Job{std::move(work), {}});
    m_thread.run([shared = m_shared, job]() mutable {
        if (!shared->isWanted())
            return;
        job->outcome = job->work();
        const std::scoped_lock lock(shared->mutex);
        shared->done.push_back(std::move(job));
        if (shared->owner)
            QMetaObject::invokeMethod(shared->owner, &WorkQueue::deliver, Qt::QueuedConnection);
    });
}

bool WorkQueue::finish(std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    // An outcome may add more work.
    do {
        const bool isIdle =
            m_thread.waitForTasks(std::chrono::milliseconds(deadline.remainingTime()));
        deliver();
        if (!isIdle)
            return false;
    } while (m_thread.tasksLeft() > 0);
    return true;
}

void WorkQueue::deliver()
{
    for (;;) {
        std::shared_ptr<Job> job;
        {
            const std::scoped_lock lock(m_shared->mutex);
            if (m_shared->done.empty())
                return;
            job = std::move(m_shared->done.front());
            m_shared->done.pop_front();
        }
        if (job->outcome)
            job->outcome();
    }
}
