// SPDX-License-Identifier: MIT
#include "tests/detection/FolderActions.h"
#include "tests/detection/ScreenshotWatcherFixture.h"
#include "tests/detection/Watched.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;
using FolderActions::write;

/// Files that the watcher is told to ignore, at any time and from any thread.
class IgnoredScreenshotsTest : public QObject, private ScreenshotWatcherFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void aFileIgnoredBeforeItAppearsIsNeverReported()
    {
        Watched watched(m_folder);
        watched->start();
        watched->ignore(QUrl::fromLocalFile(m_folder + u"/./ours.png"_s));
        QVERIFY(write(inFolder("ours.png")));
        QVERIFY(write(inFolder("theirs.png")));
        QTRY_COMPARE(watched.names(), fileNames({"theirs.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"theirs.png"}));
    }

    void aFileIgnoredWhenItsReportIsAlreadyOnItsWayIsNotReported()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(write(inFolder("ours.png")));
        // The watcher sees the file while its owner is still busy putting it there.
        letAllScansPassUnheard();
        watched->ignore(QUrl::fromLocalFile(inFolder("ours.png")));
        letAllScansPass();
        QCOMPARE(watched.names(), QStringList());
    }

    void aFileMayBeIgnoredFromAnyThread()
    {
        Watched watched(m_folder);
        watched->start();
        const std::unique_ptr<QThread> thread(QThread::create([this, &watched] {
            for (int i = 0; i < 50; ++i)
                watched->ignore(QUrl::fromLocalFile(m_folder + u"/%1.png"_s.arg(i)));
        }));
        thread->start();
        for (int i = 50; i < 100; ++i)
            QVERIFY(write(m_folder + u"/%1.png"_s.arg(i)));
        QVERIFY(thread->wait());
        for (int i = 0; i < 50; ++i)
            QVERIFY(write(m_folder + u"/%1.png"_s.arg(i)));
        QTRY_COMPARE(watched.names().size(), 50);
        letAllScansPass();
        QCOMPARE(watched.names().size(), 50);
        QVERIFY(!watched.names().contains(u"0.png"_s));
    }

    void aFileIgnoredBeforeTheStartIsNeverReported()
    {
        Watched watched(m_folder);
        watched->ignore(QUrl::fromLocalFile(inFolder("ours.png")));
        watched->start();
        QVERIFY(write(inFolder("ours.png")));
        QVERIFY(write(inFolder("theirs.png")));
        QTRY_COMPARE(watched.names(), fileNames({"theirs.png"}));
    }

    void aFileIgnoredAfterItWasReportedIsNotReportedAgain()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(write(inFolder("a.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
        watched->ignore(QUrl::fromLocalFile(inFolder("a.png")));
        QVERIFY(write(inFolder("a.png"), "another picture"));
        letAllScansPass();
        QVERIFY(QFile::remove(inFolder("a.png")));
        letAllScansPass();
        QVERIFY(write(inFolder("a.png"), "a third picture"));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"a.png"}));
    }
};

VELMORA_EVENTS_TEST(IgnoredScreenshotsTest)
#include "IgnoredScreenshotsTest.moc"
