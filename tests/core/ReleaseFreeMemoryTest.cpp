// SPDX-License-Identifier: MIT
#include "core/releaseFreeMemory.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QLocale>
#include <QTest>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

namespace
{

/// How much of the program's mapped files is in memory, in kB.
int mappedFiles()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QFile::ReadOnly))
        return 0;
    const QByteArrayList lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("RssFile:"))
            return line.simplified().split(' ').value(1).toInt();
    }
    return 0;
}

} // namespace

class ReleaseFreeMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codeThatIsReleasedTakesNoMemoryAndStillRuns()
    {
        const int before = mappedFiles();
        releaseCode();
        const int after = mappedFiles();
        QVERIFY2(after < before / 2, qPrintable(u"%1 kB, %2 kB before"_s.arg(after).arg(before)));
        QCOMPARE(QLocale::c().toString(1234.5), u"1234.5"_s);
    }

    void itMayBeReleasedWhileItRuns()
    {
        std::atomic_bool isEnding = false;
        std::atomic_int rounds = 0;
        std::thread worker([&] {
            while (!isEnding) {
                if (QLocale::c().toString(1234.5) == u"1234.5"_s)
                    ++rounds;
            }
        });
        for (int time = 0; time < 100; ++time)
            releaseCode();
        const int until = rounds + 100;
        const bool goesOn = QTest::qWaitFor([&] { return rounds > until; }, 20'000);
        isEnding = true;
        worker.join();
        QVERIFY(goesOn);
    }
};

VELMORA_EVENTS_TEST(ReleaseFreeMemoryTest)
#include "ReleaseFreeMemoryTest.moc"
