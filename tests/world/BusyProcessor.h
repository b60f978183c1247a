// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <sched.h>
#include <thread>
#include <vector>

/// Keeps one processor so busy, for as long as it exists, that a thread of idle priority gets next
/// to none of its time.
class BusyProcessor
{
public:
    BusyProcessor() : m_number(::sched_getcpu())
    {
        for (int count = 0; count < threads; ++count) {
            m_threads.emplace_back([this] {
                bindThread();
                while (!m_ends)
                    ;
            });
        }
    }
    ~BusyProcessor()
    {
        m_ends = true;
        for (std::thread &thread : m_threads)
            thread.join();
    }
    BusyProcessor(const BusyProcessor &) = delete;
    BusyProcessor &operator=(const BusyProcessor &) = delete;

    /// From now on, the calling thread runs on this processor only.
    void bindThread() const
    {
        cpu_set_t set;
        CPU_ZERO(&set);
        CPU_SET(m_number, &set);
        ::sched_setaffinity(0, sizeof set, &set);
    }

private:
    static constexpr int threads = 8;

    const int m_number;
    std::atomic_bool m_ends = false;
    std::vector<std::thread> m_threads;
};
