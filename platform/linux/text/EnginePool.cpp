#include "platform/linux/text/EnginePool.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace
{

using Clock = std::chrono::steady_clock;

struct Waiting {
    std::unique_ptr<Engine> engine;
    Clock::time_point since;
};

} // namespace

class EnginePool::Private
{
public:
    /// Releases engines that have been spare for too long; sleeps while there are none.
    void releaseSpares()
    {
        std::unique_lock lock(mutex);
        while (!ending) {
            if (waiting.size() < 2) {
                changed.wait(lock);
                continue;
            }
            // The last one given back is taken first, so that the first is the longest unused.
            const auto due = waiting.front().since + lifetime;
            if (Clock::now() < due) {
                changed.wait_until(lock, due);
                continue;
            }
            std::unique_ptr<Engine> spare = std::move(waiting.front().engine);
            waiting.erase(waiting.begin());
            lock.unlock();
            spare.reset();
            lock.lock();
        }
    }

    QStringList languages;
    std::chrono::milliseconds lifetime;
    mutable std::mutex mutex;
    std::mutex making;
    std::condition_variable changed;
    std::vector<Waiting> waiting;
    bool ending = false;
    std::thread releaser;
};

EnginePool::EnginePool(QStringList languages, std::chrono::milliseconds lifetime)
    : d(std::make_unique<Private>())
{
    d->languages = std::move(languages);
    d->lifetime = lifetime;
    d->releaser = std::thread([this] { d->releaseSpares(); });
}

EnginePool::~EnginePool()
{
    {
        const std::lock_guard lock(d->mutex);
        d->ending = true;
    }
    d->changed.notify_all();
    d->releaser.join();
}

EnginePool::Lease EnginePool::take()
{
    {
        const std::lock_guard lock(d->mutex);
        if (!d->waiting.empty()) {
            Engine *engine = d->waiting.back().engine.release();
            d->waiting.pop_back();
            return Lease(engine, Returner(this));
        }
    }
    // The engine's start writes to globals of its library: one at a time.
    const std::lock_guard lock(d->making);
    return Lease(new Engine(d->languages), Returner(this));
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
    }
    m_pool->d->changed.notify_all();
}
