// SPDX-License-Identifier: MIT
#include "tests/world/SlowDisk.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr auto delay = 60ms;

qint64 millisecondsOf(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return timer.elapsed();
}

} // namespace

class SlowDiskTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_slow;
    std::unique_ptr<QTemporaryDir> m_other;

    QByteArray slowFolder() const { return QFile::encodeName(m_slow->path()); }
    QString slowFile() const { return m_slow->filePath(u"a.txt"_s); }

    static bool fill(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::WriteOnly) && file.write("text") == 4;
    }

private Q_SLOTS:
    void init()
    {
        m_slow = std::make_unique<QTemporaryDir>();
        m_other = std::make_unique<QTemporaryDir>();
        QVERIFY(fill(slowFile()));
    }
    void cleanup() { SlowDisk::fast(); }

    void eachCallOnTheFolderTakesLonger()
    {
        SlowDisk::slow({slowFolder()}, delay);
        QVERIFY(millisecondsOf([this] { QFile::exists(slowFile()); }) >= delay.count());
        QVERIFY(millisecondsOf([this] { QDir(m_slow->path()).entryList(); }) >= delay.count());
        QVERIFY(millisecondsOf([this] { QFile::rename(slowFile(), slowFile() + u'2'); }) >=
                delay.count());
        // Opening and reading at least.
        QVERIFY(millisecondsOf([this] {
                    QFile file(slowFile() + u'2');
                    QVERIFY(file.open(QFile::ReadOnly));
                    QCOMPARE(file.readAll(), QByteArray("text"));
                }) >= 2 * delay.count());
    }

    void otherFoldersStayFast()
    {
        SlowDisk::slow({slowFolder()}, 1000ms);
        SlowDisk::startCounting();
        QVERIFY(fill(m_other->filePath(u"b.txt"_s)));
        QVERIFY(QFile::exists(m_slow->path() + u"-beside"_s) == false);
        QCOMPARE(SlowDisk::mainThreadDelay(), 0ms);
    }

    void onlyTheChosenCallsTakeLonger()
    {
        SlowDisk::slow({slowFolder()}, delay, "unlink");
        SlowDisk::startCounting();
        QVERIFY(QFile::exists(slowFile()));
        QCOMPARE(SlowDisk::mainThreadDelay(), 0ms);
        QVERIFY(QFile::remove(slowFile()));
        QCOMPARE(SlowDisk::mainThreadDelay(), delay);
    }

    void theCallsOfTheMainThreadAreListed()
    {
        SlowDisk::startCounting();
        QVERIFY(QFile::exists(slowFile()));
        const QByteArrayList calls = SlowDisk::mainThreadCalls();
        QCOMPARE(calls.size(), 1);
        const QByteArray path = QFile::encodeName(slowFile());
        QVERIFY2(calls.first().endsWith(QByteArray(" " + path)), calls.first().constData());
        SlowDisk::startCounting();
        QCOMPARE(SlowDisk::mainThreadCalls(), QByteArrayList());
    }

    void theCallsOfOtherThreadsAreNot()
    {
        SlowDisk::slow({slowFolder()}, delay);
        SlowDisk::startCounting();
        std::thread([this] { QFile::exists(slowFile()); }).join();
        QCOMPARE(SlowDisk::mainThreadCalls(), QByteArrayList());
        QCOMPARE(SlowDisk::mainThreadDelay(), 0ms);
    }

    void aProgramIsConfiguredByItsEnvironment()
    {
        const QString report = m_other->filePath(u"report"_s);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LD_PRELOAD"_s, QStringLiteral(SLOW_DISK_LIBRARY " ") +
                                                qEnvironmentVariable("LD_PRELOAD"));
        environment.insert(u"ASAN_OPTIONS"_s,
                           qEnvironmentVariable("ASAN_OPTIONS") + u":verify_asan_link_order=0"_s);
        environment.insert(u"SLOW_DISK_FOLDERS"_s, m_slow->path());
        environment.insert(u"SLOW_DISK_MILLISECONDS"_s, u"300"_s);
        environment.insert(u"SLOW_DISK_CALLS"_s, u"open"_s);
        environment.insert(u"SLOW_DISK_REPORT"_s, report);
        QProcess program;
        program.setProcessEnvironment(environment);
        const qint64 taken = millisecondsOf([&] {
            program.start(u"cat"_s, {slowFile()});
            QVERIFY(program.waitForFinished());
        });
        QCOMPARE(program.readAllStandardOutput(), QByteArray("text"));
        QVERIFY(taken >= 300);
        QFile reported(report);
        QVERIFY(reported.open(QFile::ReadOnly));
        const QByteArray line = "open " + QFile::encodeName(slowFile()) + '\n';
        QVERIFY(reported.readAll().contains(line));
    }
};

VELMORA_EVENTS_TEST(SlowDiskTest)
#include "SlowDiskTest.moc"
