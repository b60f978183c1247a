// SPDX-License-Identifier: MIT
#include "platform/DesktopRecords.h"

#include "core/BackgroundThread.h"
#include "platform/linux/desktop-records/RecentDocuments.h"
#include "platform/linux/desktop-records/ThumbnailCache.h"

#include <QTimer>

#include <chrono>
#include <memory>

using namespace std::chrono_literals;

namespace
{

/// Screenshot tools and thumbnailers record a file's path when they are done with it, perhaps after
/// this program has moved it.
constexpr std::chrono::milliseconds lookAgainAfter[] = {0s, 1s, 4s, 15s};

constexpr auto longestWaitAtTheEnd = 1s;

/// The moves of the last moments; each path leads to where its file is now. Used by one thread.
class RecentMoves
{
public:
    const RecentDocuments::Moves &all() const { return m_moves; }

    void add(const QString &from, const QString &to)
    {
        m_moves.remove(to);
        for (QString &place : m_moves) {
            if (place == from)
                place = to;
        }
        m_moves.insert(from, to);
    }

    /// `number` tells the last file that was at this path from earlier ones.
    void left(const QString &path, int number) { m_numbers.insert(path, number); }

    void forget(const QString &path, int number)
    {
        if (m_numbers.value(path) != number)
            return;
        m_numbers.remove(path);
        m_moves.remove(path);
    }

private:
    RecentDocuments::Moves m_moves;
    QHash<QString, int> m_numbers;
};

class FreedesktopRecords : public QObject, public DesktopRecords
{
public:
    FreedesktopRecords() : m_thread(longestWaitAtTheEnd) {}

    void fileMoved(const QUrl &from, const QUrl &to) override
    {
        const QString before = from.toLocalFile();
        m_thread.run(
            [moves = m_moves, before, now = to.toLocalFile()] { moves->add(before, now); });
        lookSeveralTimes(before);
    }

    void fileTrashed(const QUrl &from) override { lookSeveralTimes(from.toLocalFile()); }

private:
    void lookSeveralTimes(const QString &before)
    {
        const int number = ++m_lastNumber;
        m_thread.run([moves = m_moves, before, number] { moves->left(before, number); });
        for (const auto delay : lookAgainAfter) {
            QTimer::singleShot(delay, this, [this, before] {
                m_thread.run([moves = m_moves, before] {
                    RecentDocuments::move(moves->all());
                    ThumbnailCache::forget(before);
                });
            });
        }
        QTimer::singleShot(std::end(lookAgainAfter)[-1], this, [this, before, number] {
            m_thread.run([moves = m_moves, before, number] { moves->forget(before, number); });
        });
    }

    /// Only the thread below uses it.
    const std::shared_ptr<RecentMoves> m_moves = std::make_shared<RecentMoves>();
    int m_lastNumber = 0;
    BackgroundThread m_thread;
};

} // namespace

std::unique_ptr<DesktopRecords> makeDesktopRecords()
{
    return std::make_unique<FreedesktopRecords>();
}
