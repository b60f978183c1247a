// SPDX-License-Identifier: MIT
#include "recognition/engine/EnginePool.h"

#include "core/releaseFreeMemory.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr Clock::time_point never = Clock::time_point::max();

/// Free memory is returned to the system when nothing has been read for this long.
constexpr auto restBeforeTidying = 2s;

struct Waiting {
    std::unique_ptr<Engine> engine;
    Clock::time_point since;
};

} // namespace

class EnginePool::Private
{
public:
    /// Runs in the housekeeping thread, which sleeps until something is due.
    void keepHouse()
    {
        std::unique_lock lock(mutex);
        while (!ending) {
            const Clock::time_point now = Clock::now();
            if (waiters > waiting.size()) {
                ++existing;
                lock.unlock();
                auto made = std::make_unique<Engine>(languages);
                lock.lock();
                waiting.push_back({std::move(made), Clock::now()});
                changed.notify_all();
            } else if (tidyingDue <= now) {
                tidyingDue = never;
                const bool isResting = existing == 0;
                lock.unlock();
                // Reading leaves free memory in the heap that the system could use.
                releaseFreeMemory();
                if (isResting)
                    releaseCode();
                lock.lock();
            } else if (spareDue() <= now) {
                std::unique_ptr<Engine> spare = std::move(waiting.front().engine);
                waiting.erase(waiting.begin());
                --existing;
                tidyingDue = now;
                lock.unlock();
                spare.reset();
                lock.lock();
            } else if (const auto due = std::min(tidyingDue, spareDue()); due == never) {
                changed.wait(lock);
            } else {
                changed.wait_until(lock, due);
            }
        }
    }

    /// When the next spare engine is to be released. Engines are taken from the end, so the first
    /// one has been unused for longest.
    Clock::time_point spareDue() const
    {
        return waiting.empty() ? never : waiting.front().since + lifetime;
    }

    QStringList languages;
    std::chrono::milliseconds lifetime;
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::vector<Waiting> waiting;
    std::size_t waiters = 0; ///< threads that wait for an engine
    /// The number of engines, including those in use and those being made.
    int existing = 0;
    Clock::time_point tidyingDue = never;
    bool ending = false;
    std::thread housekeeper;
};

EnginePool::EnginePool(QStringList languages, std::chrono::milliseconds lifetime)
    : d(std::make_unique<Private>())
{
    d->languages = std::move(languages);
    d->lifetime = lifetime;
    d->housekeeper = std::thread([this] { d->keepHouse(); });
}

EnginePool::~EnginePool()
{
    {
        const std::lock_guard lock(d->mutex);
        d->ending = true;
    }
    d->changed.notify_all();
    d->housekeeper.join();
}

/// The housekeeper makes the engines: one at a time, because that writes to globals of the library,
/// and not at the priority of the thread that needs one. A thread of idle priority that made one
/// would keep the others waiting for seconds on a busy machine.
EnginePool::Lease EnginePool::take()
{
    std::unique_lock lock(d->mutex);
    if (d->waiting.empty()) {
        ++d->waiters;
        d->changed.notify_all();
        d->changed.wait(lock, [this] { return !d->waiting.empty(); });
        --d->waiters;
    }
    Engine *engine = d->waiting.back().engine.release();
    d->waiting.pop_back();
    return Lease(engine, Returner(this));
}

void EnginePool::warmUp()
{
    {
        const std::lock_guard lock(d->mutex);
        if (d->existing > 0)
            return;
    }
    take();
}

int EnginePool::waiting() const
{
    const std::lock_guard lock(d->mutex);
    return int(d->waiting.size());
}

void EnginePool::Returner::operator()(Engine *engine) const
{
    {
        const std::lock_guard lock(m_pool->d->mutex);
        m_pool->d->waiting.push_back({std::unique_ptr<Engine>(engine), Clock::now()});
        m_pool->d->tidyingDue = Clock::now() + restBeforeTidying;
    }
    m_pool->d->changed.notify_all();
}
