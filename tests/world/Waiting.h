// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QTest>

#include <chrono>
#include <thread>
#include <utility>

/// For what does not happen. What happens is waited for by its signal or by QTRY_VERIFY.
namespace Waiting
{

/// Lets the time pass, with events. Only where time itself is the subject: how often something
/// wakes up in a second, what comes after a named delay.
inline void letPass(std::chrono::milliseconds time)
{
    QTest::qWait(int(time.count()));
}

/// The same while the thread's event loop stands still, as that of a busy program does.
inline void letPassUnheard(std::chrono::milliseconds time)
{
    std::this_thread::sleep_for(time);
}

/// Whether the condition holds all the time.
template <typename Condition>
bool staysTrue(const Condition &condition, std::chrono::milliseconds time)
{
    return !QTest::qWaitFor([&condition] { return !condition(); }, int(time.count()));
}

/// Waits until the value has been the same for that long; false if it never rests.
template <typename Value>
bool settles(const Value &value, std::chrono::milliseconds time)
{
    auto last = value();
    QElapsedTimer since;
    since.start();
    const auto rests = [&] {
        if (auto now = value(); now != last) {
            last = std::move(now);
            since.restart();
        }
        return since.hasExpired(time.count());
    };
    return QTest::qWaitFor(rests, 20'000);
}

} // namespace Waiting
