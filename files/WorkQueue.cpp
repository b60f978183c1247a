// SPDX-License-Identifier: MIT
#include "files/WorkQueue.h"

#include <QDeadlineTimer>
#include <QThread>

#include <condition_variable>
#include <deque>
#include <mutex>

using namespace std::chrono_literals;

namespace
{

/// For what is under way when nobody wants to hear of it any more.
constexpr auto longestWaitForThread = 1s;

struct Job {
    std::function<WorkQueue::Outcome()> work;
    WorkQueue::Outcome outcome;
};

} // namespace

struct WorkQueue::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    // All guarded by the mutex.
    std::deque<Job> asked;
    std::deque<Job> done;
    int underWay = 0;
    /// Null when the queue is gone.
    WorkQueue *owner = nullptr;
};

WorkQueue::WorkQueue(const QString &threadName, QObject *parent)
    : QObject(parent), m_shared(std::make_shared<Shared>())
{
    m_shared->owner = this;
    m_thread = QThread::create([shared = m_shared] { work(shared); });
    m_thread->setObjectName(threadName);
    m_thread->start();
}

WorkQueue::~WorkQueue()
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->owner = nullptr;
    }
    m_shared->changed.notify_all();
    if (m_thread->wait(QDeadlineTimer(longestWaitForThread)))
        delete m_thread;
    else
        connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
}

void WorkQueue::add(std::function<Outcome()> work)
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->asked.push_back({std::move(work), {}});
    }
    m_shared->changed.notify_all();
}

bool WorkQueue::finish(std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        tell();
        std::unique_lock lock(m_shared->mutex);
        const auto isIdle = [this] { return m_shared->asked.empty() && m_shared->underWay == 0; };
        // Telling may have asked for more.
        if (m_shared->done.empty() && isIdle())
            return true;
        const auto hasNews = [this] { return !m_shared->done.empty(); };
        if (!m_shared->changed.wait_until(lock, deadline, hasNews))
            return false;
    }
}

void WorkQueue::work(const std::shared_ptr<Shared> &shared)
{
    std::unique_lock lock(shared->mutex);
    for (;;) {
        shared->changed.wait(lock, [&] { return !shared->owner || !shared->asked.empty(); });
        if (!shared->owner)
            return;
        Job job = std::move(shared->asked.front());
        shared->asked.pop_front();
        ++shared->underWay;
        lock.unlock();
        job.outcome = job.work();
        lock.lock();
        --shared->underWay;
        shared->done.push_back(std::move(job));
        shared->changed.notify_all();
        if (shared->owner)
            QMetaObject::invokeMethod(shared->owner, &WorkQueue::tell, Qt::QueuedConnection);
    }
}

void WorkQueue::tell()
{
    for (;;) {
        Job job;
        {
            const std::lock_guard lock(m_shared->mutex);
            if (m_shared->done.empty())
                return;
            job = std::move(m_shared->done.front());
            m_shared->done.pop_front();
        }
        if (job.outcome)
            job.outcome();
    }
}
