// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>
#include <mutex>

/// Counts the memory that decoded pictures and their decoders need, so that the total stays below a
/// bound whatever the files contain. Any thread.
class PictureBudget : public std::enable_shared_from_this<PictureBudget>
{
public:
    // In bytes. Together with the clipboard's bytes (maximumClipboardBytes) they are 400 MB.

    /// For all screenshots that are being decoded, cached, scaled and read, also in the background.
    static constexpr qint64 ofScreenshots = 216'000'000;
    /// For a picture that is decoded because a program pastes it.
    static constexpr qint64 ofPasting = 120'000'000;

    explicit PictureBudget(qint64 total) : m_total(total) {}

    qint64 total() const { return m_total; }

    /// A part of the budget; returned when it is destroyed.
    class Reservation
    {
    public:
        Reservation(const std::shared_ptr<PictureBudget> &budget, qint64 bytes);
        ~Reservation();
        Q_DISABLE_COPY_MOVE(Reservation)

        /// Returns what exceeds this.
        void reduceTo(qint64 bytes);

    private:
        std::shared_ptr<PictureBudget> m_budget;
        qint64 m_bytes;
    };

    /// Null when there is not that much left.
    std::shared_ptr<Reservation> reserve(qint64 bytes);

    bool hasRoom(qint64 bytes) const;

    /// Sets what is called after each return, in whichever thread that happens; an empty function
    /// ends it. Once this returns, the previous function is no longer running.
    void setOnReturn(std::function<void()> onReturn);

private:
    void giveBack(qint64 bytes);

    const qint64 m_total;
    mutable std::mutex m_mutex;
    qint64 m_reserved = 0; ///< guarded by the mutex
    std::mutex m_callMutex;
    std::function<void()> m_onReturn; ///< guarded by the call mutex
};
