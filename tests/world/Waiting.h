// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QTest>

#include <chrono>
#include <thread>
#include <utility>

/// For what must not happen. Wait for what happens by its signal or by QTRY_VERIFY.
namespace Waiting
{

/// Lets the time pass, with events. Only for tests in which time itself is the subject: how often
/// something wakes up in a second, or what follows a named delay.
inline void letPass(std::chrono::milliseconds time)
{
    QTest::qWait(int(time.count()));
}

/// The same, but the thread's event loop does not run, like that of a busy program.
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

/// Waits until the value has stayed the same for that long; false if it never does.
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
