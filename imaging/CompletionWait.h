// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/OpenFile.h"
#include "platform/FileWriters.h"

#include <chrono>
#include <functional>
#include <optional>

/// Decides when a picture file that somebody may still be writing is worth decoding, and when it
/// is not worth waiting for any longer. Knows no clock: every call says what time it is.
class CompletionWait
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// No file is waited for longer.
    static constexpr std::chrono::seconds limit{10};
    /// A file that nobody writes and no picture can be read from is given up this long after its
    /// last change; an empty one may be waiting for its content, up to the limit.
    static constexpr std::chrono::seconds brokenLimit{2};
    /// Where nobody tells whether a file is written, it counts as complete after this long
    /// without a change.
    static constexpr std::chrono::milliseconds steadyTime{150};
    /// Some tools keep a file open for seconds when they have written it. What is there to its end
    /// counts as complete after this long without a change.
    static constexpr std::chrono::milliseconds steadyTimeWhileOpen{200};

    enum class Step {
        Decode, ///< decode now, and report with decoded()
        Wait,   ///< look again after pause()
        Finish, ///< the picture last decoded is the answer
        GiveUp, ///< there is no picture
    };

    /// @param unchangedFor for how long the file has not changed already
    CompletionWait(const FileIdentity &identity, std::chrono::milliseconds unchangedFor, Time now);

    /// @param reachesEnd whether the file is there to its end, as its structure tells; asked only
    ///                   where that matters, once for each state of the file
    Step probed(FileWriters::Answer answer, const FileIdentity &identity, Time now,
                const std::function<bool()> &reachesEnd = {});
    Step decoded(bool readable, const FileIdentity &identityAfterwards, Time now);

    /// How long to wait before the next look: short at first, then longer, but not beyond the
    /// moment at which an unchanged file counts as complete.
    std::chrono::milliseconds pause(Time now);

private:
    void see(const FileIdentity &identity, Time now);
    Step waitForChange(Time now) const;
    std::chrono::milliseconds neededSteadyTime() const;
    bool isWholeThoughOpen(const std::function<bool()> &reachesEnd);

    FileIdentity m_seen;
    bool m_isCheckedForEnd = false; ///< the state that was seen last
    FileWriters::Answer m_answer = FileWriters::Answer::Unknown;
    /// The state of the file that was decoded in vain.
    std::optional<FileIdentity> m_unreadable;
    Time m_lastChange;
    Time m_deadline;
    bool m_lastTry = false;
    size_t m_pauses = 0;
};
