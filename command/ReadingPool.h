// SPDX-License-Identifier: MIT
#pragma once

#include "command/PictureReader.h"

#include <QByteArray>

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

/// Reads pictures on several threads, one per core, and returns the readings in the order of the
/// pictures. The number of readings that wait to be taken is limited. Used from one thread.
class ReadingPool
{
public:
    using Work = std::function<PictureReading(const QByteArray &path)>;
    /// Called before each picture, on any thread. If it returns true, no further picture is
    /// started.
    using Stopped = std::function<bool()>;

    ReadingPool(std::vector<QByteArray> paths, Work work, Stopped stopped);
    /// Waits until the pictures in progress have been read.
    ~ReadingPool();
    Q_DISABLE_COPY_MOVE(ReadingPool)

    /// Waits for the next picture's reading. Nothing after the last picture, or after the last that
    /// was started. `whileWaiting` is called ten times a second.
    std::optional<PictureReading> next(const std::function<void()> &whileWaiting);

private:
    void run();
    std::optional<std::size_t> nextToRead();

    const std::vector<QByteArray> m_paths;
    const Work m_work;
    const Stopped m_stopped;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded by the mutex:
    std::size_t m_begun = 0;
    std::size_t m_taken = 0;
    std::map<std::size_t, PictureReading> m_ready;
    bool m_ended = false; ///< no further picture is started
    std::vector<std::thread> m_threads;
};
