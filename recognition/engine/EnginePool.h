#pragma once

#include "recognition/engine/Engine.h"

#include <chrono>
#include <memory>

/// Engines kept ready, so that no picture waits for one to be made. A job takes one for itself and
/// gives it back; one is always kept, those unused for longer than `spareLifetime` beyond it are
/// released. Any thread.
class EnginePool
{
public:
    static constexpr std::chrono::minutes spareLifetime{1};

    explicit EnginePool(QStringList languages, std::chrono::milliseconds lifetime = spareLifetime);
    ~EnginePool();

    class Returner
    {
    public:
        explicit Returner(EnginePool *pool = nullptr) : m_pool(pool) {}
        void operator()(Engine *engine) const;

    private:
        EnginePool *m_pool;
    };
    using Lease = std::unique_ptr<Engine, Returner>;

    /// An engine of one's own until the lease ends. Blocks while one is made. The pool must
    /// outlive its leases.
    Lease take();

    /// How many engines wait for work.
    int waiting() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
