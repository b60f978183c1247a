// SPDX-License-Identifier: MIT
#include "core/BackgroundQueue.h"

BackgroundQueue::BackgroundQueue() : m_pool(makePool()) {}

BackgroundQueue::~BackgroundQueue()
{
    m_pool->clear();
    if (!m_pool->waitForDone(static_cast<int>(std::chrono::milliseconds(longestWait).count())))
        leaveBehind();
}

void BackgroundQueue::leaveBehind()
{
    m_pool->clear();
    std::unique_ptr<QThreadPool> old = std::exchange(m_pool, makePool());
    // Its destruction would wait for the work; so it stays for as long as the program runs.
    if (old->activeThreadCount() > 0)
        static_cast<void>(old.release());
}

/// A thread that has nothing to do ends after half a minute.
std::unique_ptr<QThreadPool> BackgroundQueue::makePool()
{
    auto pool = std::make_unique<QThreadPool>();
    pool->setMaxThreadCount(1);
    return pool;
}
