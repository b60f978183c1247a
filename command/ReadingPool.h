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

/// Reads pictures in threads, one a core, and hands the readings over in the order of the pictures.
/// What has been read and not been taken yet stays few. Used by one thread.
class ReadingPool
{
public:
    using Work = std::function<PictureReading(const QByteArray &path)>;
    /// Asked before each picture, from any thread. True: no further one is begun.
    using Stopped = std::function<bool()>;

    ReadingPool(std::vector<QByteArray> paths, Work work, Stopped stopped);
    /// Returns when the pictures in hand have been read.
    ~ReadingPool();
    Q_DISABLE_COPY_MOVE(ReadingPool)

    /// The next picture's reading; waits for it. Nothing after the last, or after the last that was
    /// begun. `whileWaiting` is called ten times a second.
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
    bool m_ended = false; ///< nothing more is begun
    std::vector<std::thread> m_threads;
};
