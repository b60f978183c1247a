// SPDX-License-Identifier: MIT
#include "detection/ScreenshotWatcher.h"

#include "core/VelmoraLog.h"
#include "tests/detection/FolderActions.h"
#include "tests/detection/ScreenshotWatcherFixture.h"
#include "tests/detection/Watched.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using FolderActions::moveIn;
using FolderActions::write;

class ScreenshotWatcherTest : public QObject, private ScreenshotWatcherFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void aNewFileIsReportedOnce()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(write(inFolder("a.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"a.png"}));
        QVERIFY(watched.everyCallWasOnTheMainThread());
    }

    void aNewFileIsReportedWithItsStandardisedUrl()
    {
        Watched watched(m_directory->path() + u"/./Shots//"_s);
        watched->start();
        QVERIFY(write(inFolder("100% a#b?.png")));
        QTRY_COMPARE(watched.urls(),
                     QList<QUrl>(1, QUrl::fromLocalFile(inFolder("100% a#b?.png"))));
    }

    void everyFileOfABurstIsReportedOnce()
    {
        Watched watched(m_folder);
        watched->start();
        QStringList written;
        for (int i = 0; i < 200; ++i) {
            written.append(u"shot %1.png"_s.arg(i));
            QVERIFY(write(m_folder + u'/' + written.last()));
        }
        QTRY_VERIFY(watched.names().size() >= written.size());
        letAllScansPass();
        QStringList reported = watched.names();
        reported.sort();
        written.sort();
        QCOMPARE(reported, written);
    }

    void aFileThatIsThereAtTheStartIsKnown()
    {
        QVERIFY(write(inFolder("before.png")));
        Watched watched(m_folder);
        QVERIFY(write(inFolder("between.png")));
        watched->start();
        QVERIFY(write(inFolder("after.png")));
        QTRY_COMPARE(watched.names(), fileNames({"after.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"after.png"}));
    }

    void aFileModifiedUpToTwoSecondsBeforeTheWatcherWasMadeIsReported()
    {
        Watched watched(m_folder);
        const FileTime made = FileTimes::now();
        watched->start();
        QVERIFY(moveIn(inFolder("too old.png"), made - 2500ms));
        QVERIFY(moveIn(inFolder("young.png"), made - 1500ms));
        QTRY_COMPARE(watched.names(), fileNames({"young.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"young.png"}));
    }

    void aFileCopiedInWithADateOfLongAgoIsNeverReported()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(moveIn(inFolder("old.png"), FileTimes::now() - 200s));
        QVERIFY(write(inFolder("new.png")));
        QTRY_COMPARE(watched.names(), fileNames({"new.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"new.png"}));
    }

    void filesThatLandInOneScanAreReportedByNameEachInATurnOfItsOwn()
    {
        QVERIFY(QDir().rmdir(m_folder));
        const QString prepared = m_directory->path() + u"/prepared"_s;
        QVERIFY(QDir().mkdir(prepared));
        for (const char *name : {"/b.png", "/c.png", "/a.png"})
            QVERIFY(write(prepared + QString::fromUtf8(name)));
        const QString turn = u"turn"_s;
        QStringList history;
        const auto note = [&history](const QString &entry) { history.append(entry); };
        ScreenshotWatcher watcher(
            QUrl::fromLocalFile(m_folder),
            [note](const QUrl &url) { note(FileUrls::lastPathComponent(url)); }, makeFolderEvents);
        watcher.start();
        QTRY_VERIFY(openInotifyDescriptors() > 0);
        letAllScansPass();
        // Emitted whenever a turn of the event loop ends.
        const QAbstractEventDispatcher *loop = QAbstractEventDispatcher::instance();
        connect(loop, &QAbstractEventDispatcher::aboutToBlock, &watcher, [&] { note(turn); });
        connect(loop, &QAbstractEventDispatcher::awake, &watcher, [&] { note(turn); });
        QVERIFY(QDir().rename(prepared, m_folder));
        const QStringList names = fileNames({"a.png", "b.png", "c.png"});
        QTRY_COMPARE(history.filter(u".png"_s), names);
        for (const QString &name : names)
            QCOMPARE(history.value(history.indexOf(name) - 1), turn);
    }

    void aFileThatIsReplacedWhileItsReportIsOnItsWayIsReportedOnce()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(write(inFolder("a.png"), "one"));
        letAllScansPassUnheard();
        for (const char *content : {"two", "three"}) {
            QVERIFY(QFile::remove(inFolder("a.png")));
            letAllScansPassUnheard();
            QVERIFY(write(inFolder("a.png"), content));
            letAllScansPassUnheard();
        }
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"a.png"}));
    }

    void aFileThatIsGoneWhenItsReportArrivesIsReportedWhenItIsBack()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(write(inFolder("a.png")));
        letAllScansPassUnheard();
        QVERIFY(QFile::rename(inFolder("a.png"), inFolder("aside")));
        letAllScansPass();
        QCOMPARE(watched.names(), QStringList());
        QVERIFY(QFile::rename(inFolder("aside"), inFolder("a.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"a.png"}));
    }

    void aFileThatCameJustBeforeTheFolderBecameTheOneIsNew()
    {
        QVERIFY(moveIn(inFolder("old.png"), FileTimes::now() - 1s));
        Waiting::letPass(100ms);
        const FileTime since = FileTimes::now();
        QVERIFY(write(inFolder("shot.png")));
        Watched watched(m_folder);
        watched->start(since);
        QTRY_COMPARE(watched.names(), fileNames({"shot.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"shot.png"}));
    }

    void aTifFileIsNeverReported()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(write(inFolder("a.tif")));
        QVERIFY(write(inFolder(".hidden.png")));
        QVERIFY(write(inFolder("b.TIFF")));
        QTRY_COMPARE(watched.names(), fileNames({"b.TIFF"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"b.TIFF"}));
    }

    void aFileWhoseNameIsNotUtf8IsPassedOver()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(FolderActions::writeRaw(QFile::encodeName(m_folder) + "/bad\xff.png"));
        QVERIFY(write(inFolder("good.png")));
        QTRY_COMPARE(watched.names(), fileNames({"good.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"good.png"}));
    }

    void afterTheStopNoDescriptorIsOpenAndNothingIsReported()
    {
        Watched watched(m_folder);
        watched->start();
        QTRY_VERIFY(openInotifyDescriptors() > 0);
        watched->stop();
        QTRY_COMPARE(openInotifyDescriptors(), 0);
        QVERIFY(write(inFolder("late.png")));
        letAllScansPass();
        QCOMPARE(watched.names(), QStringList());
    }

    void aWatcherThatWasNeverStartedLeavesQuietly()
    {
        Watched watched(m_folder);
        watched->stop();
    }

    void nothingIsCalledOnceTheWatcherIsGone()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(write(inFolder("a.png")));
        // The main thread is blocked in the meantime, so the report is queued.
        Waiting::letPassUnheard(300ms);
        watched.reset();
        letAllScansPass();
        QCOMPARE(watched.names(), QStringList());
    }

    void theCallbackMayEndTheWatcher()
    {
        QStringList reported;
        std::unique_ptr<ScreenshotWatcher> watcher;
        const QString mark = u"alive"_s;
        watcher = std::make_unique<ScreenshotWatcher>(
            QUrl::fromLocalFile(m_folder),
            [&reported, &watcher, mark](const QUrl &) {
                watcher.reset();
                reported.append(mark);
            },
            makeFolderEvents);
        watcher->start();
        QVERIFY(write(inFolder("a.png")));
        QVERIFY(write(inFolder("b.png")));
        QTRY_COMPARE(reported, QStringList(mark));
        letAllScansPass();
        QCOMPARE(reported, QStringList(mark));
    }

    void theStartIsLogged()
    {
        QFile log(u"/tmp/Velmora.log"_s);
        const qint64 before = log.size();
        Watched watched(m_folder);
        watched->start();
        QVERIFY(VelmoraLog::waitUntilWritten(std::chrono::seconds(10)));
        QVERIFY(log.open(QIODevice::ReadOnly) && log.seek(before));
        QVERIFY(log.readAll().contains(" watcher start\n"));
    }
};

VELMORA_EVENTS_TEST(ScreenshotWatcherTest)
#include "ScreenshotWatcherTest.moc"
