// SPDX-License-Identifier: MIT
#include "command/ReadingPool.h"

#include <QThread>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace
{

constexpr auto timeBetweenCalls = 100ms;

/// At most this many pictures are read ahead of a slow one.
constexpr std::size_t farthestAhead = 64;

} // namespace

ReadingPool::ReadingPool(std::vector<QByteArray> paths, Work work, Stopped stopped)
    : m_paths(std::move(paths)), m_work(std::move(work)), m_stopped(std::move(stopped))
{
    const auto cores = std::size_t(std::max(1, QThread::idealThreadCount()));
    for (std::size_t count = std::min(cores, m_paths.size()); count > 0; --count)
        m_threads.emplace_back([this] { run(); });
}

ReadingPool::~ReadingPool()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

std::optional<PictureReading> ReadingPool::next(const std::function<void()> &whileWaiting)
{
    std::unique_lock lock(m_mutex);
    const auto isSettled = [this] {
        return m_ready.count(m_taken) > 0 || m_taken == m_paths.size() ||
               (m_ended && m_taken == m_begun);
    };
    while (!m_changed.wait_for(lock, timeBetweenCalls, isSettled)) {
        lock.unlock();
        whileWaiting();
        lock.lock();
    }
    const auto found = m_ready.find(m_taken);
    if (found == m_ready.end())
        return std::nullopt;
    PictureReading reading = std::move(found->second);
    m_ready.erase(found);
    ++m_taken;
    lock.unlock();
    m_changed.notify_all();
    return reading;
}

void ReadingPool::run()
{
    while (const std::optional<std::size_t> index = nextToRead()) {
        PictureReading reading = m_work(m_paths[*index]);
        const std::lock_guard lock(m_mutex);
        m_ready.emplace(*index, std::move(reading));
        m_changed.notify_all();
    }
}

std::optional<std::size_t> ReadingPool::nextToRead()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_ended || m_begun < m_taken + farthestAhead; });
    m_ended = m_ended || m_begun == m_paths.size() || m_stopped();
    if (m_ended) {
        m_changed.notify_all();
        return std::nullopt;
    }
    return m_begun++;
}
