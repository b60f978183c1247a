// SPDX-License-Identifier: MIT
#pragma once

#include "core/BackgroundThread.h"
#include "filesystem/OpenFile.h"

#include <QFuture>
#include <QStringList>
#include <QUrl>

#include <atomic>
#include <functional>
#include <memory>

class PictureBudget;
class PowerSource;
class TextRecognizer;

/// Reads all the text of pictures, one picture after the other, on a thread of idle priority. The
/// thread starts with the first request. Main thread.
class BackgroundReader
{
public:
    /// The pictures it reads count in the budget.
    BackgroundReader(std::shared_ptr<TextRecognizer> recognizer, std::shared_ptr<PowerSource> power,
                     std::shared_ptr<PictureBudget> budget);
    /// Abandons what is being read. Usually the thread notices that within some tens of
    /// milliseconds. On a busy machine it may not run for seconds, and then it is left alone.
    ~BackgroundReader();

    /// In percent. With less charge than this, nothing is read on battery power.
    static constexpr int leastBattery = 20;

    struct Reading {
        enum class Outcome {
            Read,
            Abandoned,
            NoPower,  ///< the battery is low
            NoMemory, ///< other pictures need all of the budget
            Missing,  ///< there is no file, or it may still be being written
        };
        Outcome outcome = Outcome::Abandoned;
        FileIdentity file;
        QStringList lines; ///< empty if there is no picture
    };
    QFuture<Reading> read(const QUrl &file);

    /// Abandons the readings that are in progress or queued.
    void abandon();

private:
    struct Services;
    using Flag = std::shared_ptr<std::atomic_bool>;

    static void bePatient();
    static Reading readPage(Services &services, const QUrl &url, const std::atomic_bool &abandoned);

    std::shared_ptr<Services> m_services;
    Flag m_abandoned;
    BackgroundThread m_thread;
};
