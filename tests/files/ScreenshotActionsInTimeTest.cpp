// SPDX-License-Identifier: MIT
#include "tests/files/ScreenshotActionsFixture.h"
#include "tests/world/TestProgram.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The order of actions: which copy stays on the clipboard, and what happens while one takes long.
class ScreenshotActionsInTimeTest : public QObject, ScreenshotActionsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void ofTwoScreenshotsTheNewerStaysOnTheClipboard()
    {
        const QUrl older = picture(u"older.png"_s);
        const QUrl newer = picture(u"newer.png"_s, Qt::blue);
        m_writers.written = fileIdentity(older.toLocalFile())->serial;
        const ScreenshotPointer first = m_actions->open(older);
        m_actions->copyNew(first, CopyBehavior::imageAndFile);
        m_actions->copyNew(m_actions->open(newer), CopyBehavior::imageAndFile);
        QTRY_COMPARE(onClipboard(), newer);
        bool isComplete = false;
        first->whenComplete(this, [&isComplete] { isComplete = true; });
        m_writers.written = 0;
        QTRY_VERIFY(isComplete);
        finish();
        QCOMPARE(onClipboard(), newer);
    }

    void anOlderScreenshotIsCopiedUntilTheNewerIsComplete()
    {
        const QUrl older = picture(u"older.png"_s);
        const QUrl newer = picture(u"newer.png"_s, Qt::blue);
        m_writers.written = fileIdentity(newer.toLocalFile())->serial;
        m_actions->copyNew(m_actions->open(older), CopyBehavior::file);
        m_actions->copyNew(m_actions->open(newer), CopyBehavior::file);
        QTRY_COMPARE(onClipboard(), older);
        m_writers.written = 0;
        QTRY_COMPARE(onClipboard(), newer);
    }

    void whatTheUserCopiesIsNotReplacedByAScreenshotThatCameBefore()
    {
        const QUrl older = picture(u"older.png"_s);
        const QUrl newer = picture(u"newer.png"_s, Qt::blue);
        m_writers.written = fileIdentity(newer.toLocalFile())->serial;
        const ScreenshotPointer late = m_actions->open(newer);
        m_actions->copyNew(late, CopyBehavior::file);
        copy(m_actions->open(older));
        QTRY_COMPARE(m_copied, true);
        bool isComplete = false;
        late->whenComplete(this, [&isComplete] { isComplete = true; });
        m_writers.written = 0;
        QTRY_VERIFY(isComplete);
        finish();
        QCOMPARE(onClipboard(), older);
    }

    void theClipboardFollowsTheFile()
    {
        const ScreenshotPointer shot = m_actions->open(picture(u"a.png"_s));
        copy(shot);
        rename(shot, u"b.png"_s);
        finish();
        QCOMPARE(onClipboard(), m_files->url(u"b.png"_s));
        undo(shot, UndoableAction::rename(m_files->url(u"a.png"_s), m_files->url(u"b.png"_s)));
        finish();
        QCOMPARE(onClipboard(), m_files->url(u"a.png"_s));
    }

    void whatTakesLongIsAnnounced()
    {
        m_trash.isClosed = true;
        const ScreenshotPointer shot = m_actions->open(picture(u"a.png"_s));
        const ScreenshotPointer other = m_actions->open(picture(u"b.png"_s));
        QSignalSpy announced(shot.get(), &Screenshot::takesLong);
        QSignalSpy waits(other.get(), &Screenshot::takesLong);
        QElapsedTimer watch;
        watch.start();
        trash(shot);
        rename(other, u"c.png"_s);
        QVERIFY(announced.wait());
        QVERIFY2(watch.elapsed() >= 90, qPrintable(QString::number(watch.elapsed())));
        QCOMPARE(announced[0][0].toString(), u"Moving to Trash..."_s);
        QTRY_COMPARE(waits.size(), 1);
        QCOMPARE(waits[0][0].toString(), u"Renaming..."_s);
        m_trash.gate.release();
        finish();
        QCOMPARE(names(), QStringList{u"c.png"_s});
    }

    void whatIsSoonDoneIsNotAnnounced()
    {
        const ScreenshotPointer shot = m_actions->open(picture(u"a.png"_s));
        QSignalSpy announced(shot.get(), &Screenshot::takesLong);
        rename(shot, u"b.png"_s);
        finish();
        QVERIFY(!announced.wait(300));
    }

    void aNewScreenshotIsOpenedWhileAnotherOneTakesLong()
    {
        m_trash.isClosed = true;
        trash(m_actions->open(picture(u"a.png"_s)));
        QVERIFY(m_trash.hasBegun.tryAcquire(1, 10000));
        const ScreenshotPointer shot = m_actions->open(picture(u"b.png"_s));
        bool isOpened = false;
        shot->whenOpened(this, [&] { isOpened = shot->held() != nullptr; });
        QTRY_VERIFY(isOpened);
    }

    void aFileThatWasMovedByTheProgramIsNotNew()
    {
        const ScreenshotPointer shot = m_actions->open(picture(u"a.png"_s));
        const QUrl other = m_files->make(u"other.png"_s);
        QStringList reported;
        const auto report = [&](const QUrl &url) {
            m_actions->whenNew(url, [&reported, url] { reported << url.fileName(); });
        };
        report(other);
        QCOMPARE(reported, QStringList{u"other.png"_s});
        rename(shot, u"b.png"_s);
        // The folder may report the file before the program knows that the rename is done.
        while (!FileUrls::exists(m_files->url(u"b.png"_s)))
            QThread::yieldCurrentThread();
        report(m_files->url(u"b.png"_s));
        report(other);
        QCOMPARE(reported, QStringList{u"other.png"_s});
        finish();
        QCOMPARE(reported, (QStringList{u"other.png"_s, u"other.png"_s}));
    }

    void endingWaitsForWhatIsUnderWayAndNoLongerThanAllowed()
    {
        m_trash.isClosed = true;
        trash(m_actions->open(picture(u"a.png"_s)));
        QElapsedTimer watch;
        watch.start();
        QVERIFY(!m_actions->finish(200ms));
        QVERIFY(watch.elapsed() < 2000);
        m_trash.gate.release();
        QVERIFY(m_actions->finish(20s));
        QVERIFY(m_trashed.result);
    }
};

VELMORA_EVENTS_TEST(ScreenshotActionsInTimeTest)
#include "ScreenshotActionsInTimeTest.moc"
