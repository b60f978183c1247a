// SPDX-License-Identifier: MIT
#include "platform/DesktopRecords.h"

#include "core/BackgroundThread.h"
#include "platform/linux/desktop-records/RecentDocuments.h"
#include "platform/linux/desktop-records/ThumbnailCache.h"

#include <QTimer>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

/// Screenshot tools and thumbnailers record a file's path when they are done with it, perhaps after
/// this program has moved it.
constexpr std::chrono::milliseconds lookAgainAfter[] = {0s, 1s, 4s, 15s};

constexpr auto longestWaitAtTheEnd = 1s;

class FreedesktopRecords : public QObject, public DesktopRecords
{
public:
    FreedesktopRecords() : m_thread(longestWaitAtTheEnd) {}

    void fileMoved(const QUrl &from, const QUrl &to) override
    {
        const QString before = from.toLocalFile();
        const QString now = to.toLocalFile();
        m_moves.remove(now);
        for (QString &place : m_moves) {
            if (place == before)
                place = now;
        }
        m_moves.insert(before, now);
        lookSeveralTimes(before);
    }

    void fileTrashed(const QUrl &from) override { lookSeveralTimes(from.toLocalFile()); }

private:
    void lookSeveralTimes(const QString &before)
    {
        const int number = ++m_lastNumber;
        m_numbers.insert(before, number);
        for (const auto delay : lookAgainAfter) {
            QTimer::singleShot(delay, this, [this, before] {
                m_thread.run([before, moves = m_moves] {
                    RecentDocuments::move(moves);
                    ThumbnailCache::forget(before);
                });
            });
        }
        QTimer::singleShot(std::end(lookAgainAfter)[-1], this, [this, before, number] {
            // Unless it was moved from there again.
            if (m_numbers.value(before) == number) {
                m_numbers.remove(before);
                m_moves.remove(before);
            }
        });
    }

    /// The moves of the last moments; each path maps to where its file is now.
    RecentDocuments::Moves m_moves;
    QHash<QString, int> m_numbers;
    int m_lastNumber = 0;
    BackgroundThread m_thread;
};

} // namespace

std::unique_ptr<DesktopRecords> makeDesktopRecords()
{
    return std::make_unique<FreedesktopRecords>();
}
