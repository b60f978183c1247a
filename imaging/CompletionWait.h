// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/OpenFile.h"
#include "platform/FileWriters.h"

#include <chrono>
#include <functional>
#include <optional>

/// Decides when a picture file that is perhaps still being written is worth decoding, and when to
/// stop waiting for it. Has no clock: every call gets the time.
class CompletionWait
{
public:
    using Time = std::chrono::steady_clock::time_point;

    /// The longest wait for a file.
    static constexpr std::chrono::seconds limit{10};
    /// A file that is not being written and that can't be decoded is given up this long after its
    /// last change. An empty one may still get its content, and is waited for up to the limit.
    static constexpr std::chrono::seconds brokenLimit{2};
    /// When it is unknown whether a file is being written, it counts as complete after this long
    /// without a change.
    static constexpr std::chrono::milliseconds steadyTime{150};
    /// Some tools keep a file open for seconds after they have written it. A file that is there to
    /// its end counts as complete after this long without a change.
    static constexpr std::chrono::milliseconds steadyTimeWhileOpen{200};

    enum class Step {
        Decode, ///< decode now, and report with decoded()
        Wait,   ///< check again after pause()
        Finish, ///< the picture last decoded is the answer
        GiveUp, ///< there is no picture
    };

    /// @param unchangedFor for how long the file has already been unchanged
    CompletionWait(const FileIdentity &identity, std::chrono::milliseconds unchangedFor, Time now);

    /// @param reachesEnd whether the file is there to its end, by its structure; called only when
    /// that
    ///                                     matters, once for each state of the file
    Step probed(FileWriters::Answer answer, const FileIdentity &identity, Time now,
                const std::function<bool()> &reachesEnd = {});
    Step decoded(bool readable, const FileIdentity &identityAfterwards, Time now);

    /// How long to wait before the next check: short at first, then longer, but not beyond the
    /// moment at which an unchanged file counts as complete.
    std::chrono::milliseconds pause(Time now);

private:
    void see(const FileIdentity &identity, Time now);
    Step waitForChange(Time now) const;
    std::chrono::milliseconds neededSteadyTime() const;
    bool isWholeThoughOpen(const std::function<bool()> &reachesEnd);

    FileIdentity m_seen;
    bool m_isCheckedForEnd = false; ///< for the state that was seen last
    FileWriters::Answer m_answer = FileWriters::Answer::Unknown;
    /// The state of the file in which it could not be decoded.
    std::optional<FileIdentity> m_unreadable;
    Time m_lastChange;
    Time m_deadline;
    bool m_lastTry = false;
    size_t m_pauses = 0;
};
