// SPDX-License-Identifier: MIT
#include "imaging/CompletionWait.h"

#include <array>
#include <utility>

using namespace std::chrono_literals;

namespace
{

/// The last value repeats.
constexpr std::array<std::chrono::milliseconds, 7> pauses = {2ms,  5ms,  10ms, 20ms,
                                                             50ms, 50ms, 100ms};

} // namespace

CompletionWait::CompletionWait(const FileIdentity &identity, std::chrono::milliseconds unchangedFor,
                               Time now)
    : m_seen(identity), m_lastChange(now - unchangedFor), m_deadline(now + limit)
{
}

CompletionWait::Step CompletionWait::probed(FileWriters::Answer answer,
                                            const FileIdentity &identity, Time now,
                                            const std::function<bool()> &reachesEnd)
{
    see(identity, now);
    m_answer = answer;
    m_lastTry = now >= m_deadline;
    if (m_unreadable && m_unreadable->sameContent(m_seen))
        return waitForChange(now);
    if (m_lastTry || answer == FileWriters::Answer::None)
        return Step::Decode;
    if (now - m_lastChange < neededSteadyTime())
        return Step::Wait;
    return answer == FileWriters::Answer::Unknown || isWholeThoughOpen(reachesEnd) ? Step::Decode
                                                                                   : Step::Wait;
}

std::chrono::milliseconds CompletionWait::neededSteadyTime() const
{
    return m_answer == FileWriters::Answer::Some ? steadyTimeWhileOpen : steadyTime;
}

bool CompletionWait::isWholeThoughOpen(const std::function<bool()> &reachesEnd)
{
    return !std::exchange(m_isCheckedForEnd, true) && reachesEnd && reachesEnd();
}

CompletionWait::Step CompletionWait::decoded(bool readable, const FileIdentity &identityAfterwards,
                                             Time now)
{
    const bool changed = !m_seen.sameContent(identityAfterwards);
    if (readable && (!changed || m_lastTry))
        return Step::Finish;
    if (changed) {
        see(identityAfterwards, now);
        return m_lastTry ? Step::GiveUp : Step::Wait;
    }
    m_unreadable = m_seen;
    return waitForChange(now);
}

std::chrono::milliseconds CompletionWait::pause(Time now)
{
    const std::chrono::milliseconds pause = pauses[std::min(m_pauses++, pauses.size() - 1)];
    const auto rest =
        std::chrono::ceil<std::chrono::milliseconds>(m_lastChange + neededSteadyTime() - now);
    return rest > 0ms ? std::min(pause, rest) : pause;
}

void CompletionWait::see(const FileIdentity &identity, Time now)
{
    if (m_seen.sameContent(identity))
        return;
    m_seen = identity;
    m_lastChange = now;
    m_isCheckedForEnd = false;
}

CompletionWait::Step CompletionWait::waitForChange(Time now) const
{
    if (m_answer == FileWriters::Answer::Some && !m_lastTry)
        return Step::Wait;
    const bool finished = m_answer == FileWriters::Answer::None && m_seen.size > 0;
    const std::chrono::seconds patience = finished ? brokenLimit : limit;
    return m_lastTry || now - m_lastChange >= patience ? Step::GiveUp : Step::Wait;
}
