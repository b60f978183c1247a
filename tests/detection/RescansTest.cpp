// SPDX-License-Identifier: MIT
#include "detection/ScreenshotWatcher.h"

#include "tests/detection/Watched.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QTemporaryDir>

#include <atomic>

using namespace std::chrono_literals;

namespace
{

/// Where nothing can be watched, each look at the folder tries to watch it again. This class counts
/// those attempts, and can still report changes for the test.
class CountingFolderEvents : public FolderEvents
{
public:
    explicit CountingFolderEvents(std::atomic_int &looks) : m_looks(looks) {}

    Coverage arm(const QString &) override
    {
        ++m_looks;
        return Coverage::Nothing;
    }
    void disarm() override {}

private:
    std::atomic_int &m_looks;
};

} // namespace

/// How often and when the folder is checked.
class RescansTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFolderIsLookedAtTenTimesASecond()
    {
        const int looks = looksDuring([] { Waiting::letPass(1000ms); });
        QVERIFY2(looks >= 7 && looks <= 11, qPrintable(QString::number(looks)));
    }

    void eachEventIsFollowedByThreeMoreLooksThatNoneCancels()
    {
        const auto pass = [this](bool isReported) {
            for (int i = 0; i < 3; ++i) {
                if (isReported)
                    tellSomething();
                Waiting::letPass(20ms);
                if (isReported)
                    tellSomething();
                Waiting::letPass(450ms);
            }
        };
        const int ticks = looksDuring([&pass] { pass(false); });
        const int looks = looksDuring([&pass] { pass(true); });
        // Six events cause one scan at once and three rescans each. A busy machine may merge two of
        // them.
        QVERIFY2(looks - ticks >= 19, qPrintable(QString::number(looks - ticks)));
        QVERIFY2(looks - ticks <= 26, qPrintable(QString::number(looks - ticks)));
    }

    void init()
    {
        m_watched = std::make_unique<Watched>(m_directory.path(), [this] {
            auto events = std::make_unique<CountingFolderEvents>(m_looks);
            m_events = events.get();
            return events;
        });
        (*m_watched)->start();
        QTRY_VERIFY(m_looks > 0);
    }

    void cleanup() { m_watched.reset(); }

private:
    template <typename Act>
    int looksDuring(const Act &act)
    {
        const int before = m_looks;
        act();
        return m_looks - before;
    }

    void tellSomething()
    {
        FolderEvents *const events = m_events;
        QMetaObject::invokeMethod(
            events, [events] { Q_EMIT events->entriesChanged({}); }, Qt::QueuedConnection);
    }

    QTemporaryDir m_directory;
    std::atomic_int m_looks = 0;
    std::atomic<FolderEvents *> m_events = nullptr;
    std::unique_ptr<Watched> m_watched;
};

VELMORA_EVENTS_TEST(RescansTest)
#include "RescansTest.moc"
