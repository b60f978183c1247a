// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/engine/Engine.h"

#include <chrono>
#include <memory>

/// Keeps engines ready, so that pictures seldom wait for one to be made. Each is released after
/// `spareLifetime` without use, because it holds much memory. Any thread.
///
/// Engines are made on a thread of the pool's, with the priority of the thread that creates the
/// pool.
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

    /// An engine for the caller alone until the lease ends. Blocks while one is made. The pool must
    /// outlive its leases.
    Lease take();

    /// Makes an engine if there is none, spare or in use. Blocks while it is made.
    void warmUp();

    /// The number of spare engines.
    int waiting() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
