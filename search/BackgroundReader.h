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

class PowerSource;
class TextRecognizer;

/// Reads all text of a picture, one picture after the other, in a thread that gets only what no
/// other thread wants. Starts no thread before it is asked. Main thread.
class BackgroundReader
{
public:
    /// Both outlive this object.
    BackgroundReader(TextRecognizer &recognizer, PowerSource &power);
    /// Waits until the recogniser is not used any more, some tens of milliseconds.
    ~BackgroundReader();

    /// Below this the battery is left alone.
    static constexpr int leastBattery = 20;

    struct Reading {
        enum class Outcome {
            Read,
            Abandoned,
            NoPower, ///< the battery is low
            Missing, ///< there is no file, or somebody may still be writing it
        };
        Outcome outcome = Outcome::Abandoned;
        FileIdentity file;
        QStringList lines; ///< none where there is no picture
    };
    QFuture<Reading> read(const QUrl &file);

    /// Ends what is being read, or waits to be.
    void abandon();

    /// Other work that nobody waits for, on the same thread.
    template <typename Work>
    auto ask(Work work)
    {
        return m_thread.ask([work = std::move(work)] {
            bePatient();
            return work();
        });
    }

private:
    struct Services;
    using Flag = std::shared_ptr<std::atomic_bool>;

    static void bePatient();
    static Reading readPage(Services &services, const QUrl &url, const std::atomic_bool &abandoned);

    std::shared_ptr<Services> m_services;
    Flag m_abandoned;
    BackgroundThread m_thread;
};
