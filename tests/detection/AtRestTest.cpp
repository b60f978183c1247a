// SPDX-License-Identifier: MIT
#include "tests/detection/FolderActions.h"
#include "tests/detection/PoorFolderEvents.h"
#include "tests/detection/Watched.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <ctime>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using FolderActions::setDate;
using FolderActions::write;

namespace
{

/// The id of one of this process's threads; empty if there is none with that name.
QString threadNamed(const QByteArray &name)
{
    const QDir tasks(u"/proc/self/task"_s);
    for (const QString &number : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile comm(tasks.filePath(number + u"/comm"_s));
        if (comm.open(QIODevice::ReadOnly) && comm.readAll().trimmed() == name)
            return number;
    }
    return {};
}

/// How often the watcher's thread has gone to sleep, which it does after each wake-up.
int sleepsOfWatcher()
{
    QFile status(u"/proc/self/task/"_s + threadNamed("velmora.screens") + u"/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray text = status.readAll();
    const QByteArray key = "\nvoluntary_ctxt_switches:";
    const qsizetype begin = text.indexOf(key) + key.size();
    return text.mid(begin, text.indexOf('\n', begin) - begin).trimmed().toInt();
}

/// The processor time that this process has used.
std::chrono::nanoseconds used()
{
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace

/// What watching costs while nothing happens.
class AtRestTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // Neither in /tmp nor in /dev/shm, where other programs are busy: the parents are watched,
        // too.
        m_directory = std::make_unique<QTemporaryDir>(u"/var/tmp/velmora-XXXXXX"_s);
        QVERIFY(m_directory->isValid());
        m_folder = m_directory->path() + u"/Shots"_s;
        QVERIFY(QDir().mkdir(m_folder));
    }

    void whereEverythingIsReportedNothingWakesTheWatcher_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("a folder") << true;
        QTest::newRow("a folder that is missing") << false;
    }

    void whereEverythingIsReportedNothingWakesTheWatcher()
    {
        QFETCH(bool, exists);
        if (!exists)
            QVERIFY(QDir().rmdir(m_folder));
        Watched watched(m_folder);
        watched->start();
        QVERIFY(Waiting::settles(sleepsOfWatcher, 600ms));
        const int before = sleepsOfWatcher();
        QVERIFY(before > 0);
        Waiting::letPass(2000ms);
        QCOMPARE(sleepsOfWatcher(), before);

        if (!exists)
            QVERIFY(QDir().mkdir(m_folder));
        QVERIFY(write(inFolder("a.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
        QVERIFY(Waiting::settles(sleepsOfWatcher, 600ms));
        const int afterwards = sleepsOfWatcher();
        Waiting::letPass(2000ms);
        QCOMPARE(sleepsOfWatcher(), afterwards);
    }

    void theWatcherWakesWhenACandidateGetsTooOld()
    {
        Watched watched(m_folder);
        watched->start();
        letAllScansPass();
        QVERIFY(write(inFolder("a")) && setDate(inFolder("a"), FileTimes::now() - 180s + 1500ms) &&
                FolderActions::rename(inFolder("a"), inFolder("a.png")));
        Waiting::letPass(800ms);
        const int before = sleepsOfWatcher();
        Waiting::letPass(400ms);
        QCOMPARE(sleepsOfWatcher(), before);
        QTRY_VERIFY_WITH_TIMEOUT(sleepsOfWatcher() > before, 1500);
        QVERIFY(Waiting::settles(sleepsOfWatcher, 600ms));
        const int afterwards = sleepsOfWatcher();
        Waiting::letPass(1000ms);
        QCOMPARE(sleepsOfWatcher(), afterwards);
    }

    void aFolderInTheFolderIsLookedAtAllTheTime()
    {
        QVERIFY(QDir().mkdir(inFolder("a.png")));
        QVERIFY(setDate(inFolder("a.png"), FileTimes::now() - 1h));
        Watched watched(m_folder);
        watched->start();
        letAllScansPass();
        QVERIFY(write(inFolder("a.png") + u"/inside"_s));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
    }

    void whereNothingIsReportedALargeFolderCostsLittle()
    {
        constexpr int files = 10'000;
        for (int i = 0; i < files; ++i)
            QVERIFY(FolderActions::writeRaw(QFile::encodeName(m_folder + u"/old %1.png"_s.arg(i))));
        Watched watched(m_folder, [] {
            return std::make_unique<PoorFolderEvents>(FolderEvents::Coverage::Nothing);
        });
        watched->start();
        Waiting::letPass(500ms);
        auto least = 10s - 0ns;
        for (int attempt = 0; attempt < 3; ++attempt) {
            const auto before = used();
            Waiting::letPass(2000ms);
            least = std::min(least, used() - before);
        }
        // Listing takes 1 % of the time. The rest is for the ticks, for this test itself, and for
        // the overhead of a busy machine. Listing at each tick took 457 ms.
        QVERIFY2(least < 100ms, qPrintable(QString::number(least / 1us)));

        QVERIFY(write(inFolder("new.png")));
        QTRY_COMPARE(watched.names(), fileNames({"new.png"}));
    }

    void whereNothingIsReportedAFileRewrittenInPlaceIsSeenWithinSeconds()
    {
        QVERIFY(write(inFolder("a.png")));
        QVERIFY(setDate(inFolder("a.png"), FileTimes::now() - 1h));
        Watched watched(m_folder, [] {
            return std::make_unique<PoorFolderEvents>(FolderEvents::Coverage::Nothing);
        });
        watched->start();
        letAllScansPass();
        QVERIFY(setDate(inFolder("a.png"), FileTimes::now()));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
    }

private:
    QString inFolder(const char *name) const { return m_folder + u'/' + QString::fromUtf8(name); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_folder;
};

VELMORA_EVENTS_TEST(AtRestTest)
#include "AtRestTest.moc"
