// SPDX-License-Identifier: MIT
#include "files/ScreenshotActions.h"

#include "files/UndoHistory.h"
#include "filesystem/FileUrls.h"
#include "filesystem/OpenFile.h"
#include "platform/FileBrowser.h"
#include "platform/FileWriters.h"
#include "tests/fakes/FakeDesktopRecords.h"
#include "tests/fakes/FakeFileBrowser.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/fakes/FakeSystemTrash.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// A trash that waits until the test lets it continue.
class GatedTrash : public FakeSystemTrash
{
public:
    Trashed trash(const QUrl &file) override
    {
        if (isClosed) {
            hasBegun.release();
            gate.acquire();
        }
        return FakeSystemTrash::trash(file);
    }

    bool isClosed = false;
    QSemaphore hasBegun;
    QSemaphore gate;
};

/// Lets the test pretend that a file is still being written.
class SteeredFileWriters : public FileWriters
{
public:
    Answer writersOf(int descriptor) override
    {
        const std::optional<FileIdentity> file = fileIdentity(descriptor);
        return file && file->serial == written ? Answer::Some : Answer::None;
    }

    std::atomic<quint64> written = 0;
};

} // namespace

class ScreenshotActionsTest : public QObject
{
    Q_OBJECT

    using By = ScreenshotActions::By;
    using Outcome = ScreenshotRename::Outcome;

    std::unique_ptr<TestFiles> m_files;
    GatedTrash m_trash;
    FakePasteboard m_pasteboard;
    FakeFileBrowser m_browser;
    FakeDesktopRecords m_records;
    SteeredFileWriters m_writers;
    std::unique_ptr<ScreenshotImages> m_images;
    std::unique_ptr<UndoHistory> m_history;
    std::unique_ptr<ScreenshotActions> m_actions;
    ScreenshotRename m_renamed;
    ScreenshotMoves::Trashing m_trashed;
    std::error_code m_undone;
    std::optional<bool> m_copied;

    QUrl picture(const QString &name, QColor color = Qt::red) const
    {
        QImage image(64, 40, QImage::Format_RGB32);
        image.fill(color);
        const QUrl url = m_files->url(name);
        if (!image.save(url.toLocalFile(), "PNG"))
            qFatal("can't write a picture");
        return url;
    }
    ScreenshotPointer opened(const QUrl &url)
    {
        const ScreenshotPointer screenshot = m_actions->open(url);
        screenshot->open();
        return screenshot;
    }
    void rename(const ScreenshotPointer &screenshot, const QString &name, By by = By::User)
    {
        m_actions->rename(screenshot, name, by,
                          [this](const ScreenshotRename &rename) { m_renamed = rename; });
    }
    void trash(const ScreenshotPointer &screenshot)
    {
        m_actions->trash(screenshot,
                         [this](const ScreenshotMoves::Trashing &done) { m_trashed = done; });
    }
    void undo(const ScreenshotPointer &screenshot, const UndoableAction &action)
    {
        m_actions->undo(screenshot, action,
                        [this](const std::error_code &error) { m_undone = error; });
    }
    void copy(const ScreenshotPointer &screenshot)
    {
        m_actions->copy(screenshot, CopyBehavior::imageAndFile,
                        [this](bool copied) { m_copied = copied; });
    }
    void finish() { QVERIFY(m_actions->finish(20s)); }
    QStringList names() const
    {
        return QDir(m_files->folder().toLocalFile()).entryList(QDir::Files, QDir::Name);
    }
    std::optional<QUrl> onClipboard() const
    {
        return m_pasteboard.contents ? m_pasteboard.contents->file : std::nullopt;
    }

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<TestFiles>();
        m_trash.isClosed = false;
        m_writers.written = 0;
        m_pasteboard.contents.reset();
        m_records = {};
        m_images = std::make_unique<ScreenshotImages>(m_writers);
        m_history = std::make_unique<UndoHistory>();
        m_actions = std::make_unique<ScreenshotActions>(
            ScreenshotActions::Services{m_trash, m_pasteboard, m_browser, *m_images, m_records},
            *m_history);
        m_renamed = {};
        m_trashed = {};
        m_undone = {};
        m_copied.reset();
    }
    void cleanup()
    {
        m_trash.gate.release(100);
        m_actions.reset();
        m_images.reset();
        m_trash.gate.tryAcquire(m_trash.gate.available());
    }

    void whatIsAskedForIsDoneInItsOrder()
    {
        const ScreenshotPointer shot = m_actions->open(picture(u"a.png"_s));
        rename(shot, u"b.png"_s);
        rename(shot, u"c.png"_s);
        copy(shot);
        rename(shot, u"d.png"_s);
        trash(shot);
        // The file is not accessed before the call returns.
        QVERIFY(m_copied == std::nullopt);
        finish();
        QCOMPARE(m_renamed.result,
                 (RenameResult{m_files->url(u"c.png"_s), m_files->url(u"d.png"_s)}));
        QCOMPARE(m_trashed.result->originalURL, m_files->url(u"d.png"_s));
        QCOMPARE(shot->url(), m_trashed.result->trashedURL);
        QVERIFY(*m_copied);
        QCOMPARE(onClipboard(), m_files->url(u"d.png"_s));
        QCOMPARE(names(), QStringList());
    }

    void theDesktopIsToldOfEachMove()
    {
        const QUrl a = picture(u"a.png"_s);
        const QUrl b = m_files->url(u"b.png"_s);
        const ScreenshotPointer shot = m_actions->open(a);
        rename(shot, u"b.png"_s);
        undo(shot, UndoableAction::rename(a, b));
        finish();
        trash(shot);
        finish();
        const QUrl trashed = m_trashed.result->trashedURL;
        undo(shot, UndoableAction::trash(a, trashed));
        finish();
        QCOMPARE(m_records.moves, (QList<std::pair<QUrl, QUrl>>{{a, b}, {b, a}, {trashed, a}}));
        QCOMPARE(m_records.trashed, QList{a});
        // A failed action is not a move.
        undo(shot, UndoableAction::rename(a, b));
        finish();
        QVERIFY(m_undone);
        QCOMPARE(m_records.moves.size(), 3);
    }

    void theDesktopIsToldWhenTheMenuUndoes()
    {
        const QUrl a = picture(u"a.png"_s);
        const QUrl b = m_files->url(u"b.png"_s);
        m_history->push(UndoableAction::rename(b, a));
        m_actions->undoLast();
        finish();
        QCOMPARE(m_records.moves, (QList<std::pair<QUrl, QUrl>>{{a, b}}));
    }

    void whatComesAfterTheTrashDoesNotTouchTheTrash()
    {
        const ScreenshotPointer shot = m_actions->open(picture(u"a.png"_s));
        trash(shot);
        rename(shot, u"b.png"_s);
        finish();
        const QUrl trashedURL = m_trashed.result->trashedURL;
        QVERIFY(m_renamed.outcome == Outcome::Failed);
        QVERIFY(FileUrls::exists(trashedURL));
        trash(shot);
        finish();
        QVERIFY(m_trashed.error);
        QVERIFY(FileUrls::exists(trashedURL));
    }

    void anotherFileInItsPlaceIsLeftAlone_data()
    {
        QTest::addColumn<bool>("isGone");
        QTest::newRow("its own has another name") << false;
        QTest::newRow("its own is gone") << true;
    }

    void anotherFileInItsPlaceIsLeftAlone()
    {
        QFETCH(const bool, isGone);
        const QUrl place = picture(u"a.png"_s);
        const ScreenshotPointer shot = opened(place);
        shot->letGo();
        if (isGone)
            QVERIFY(QFile::remove(place.toLocalFile()));
        else
            QVERIFY(QFile::rename(place.toLocalFile(), m_files->url(u"own.png"_s).toLocalFile()));
        TestFiles::write(place, "somebody else's");

        rename(shot, u"b.png"_s);
        copy(shot);
        trash(shot);
        undo(shot, UndoableAction::rename(m_files->url(u"old.png"_s), place));
        finish();
        QVERIFY(m_renamed.outcome == Outcome::Failed);
        QCOMPARE(m_copied, false);
        QVERIFY(!m_trashed.result);
        QVERIFY(m_undone);
        QVERIFY(!m_pasteboard.contents);
        QCOMPARE(TestFiles::read(place), QByteArray("somebody else's"));
        QCOMPARE(names(),
                 isGone ? QStringList{u"a.png"_s} : (QStringList{u"a.png"_s, u"own.png"_s}));
    }

    void theProgramsRenameWaitsUntilTheFileIsComplete()
    {
        const QUrl place = picture(u"a.png"_s);
        m_writers.written = fileIdentity(place.toLocalFile())->serial;
        const ScreenshotPointer shot = m_actions->open(place);
        rename(shot, u"b.png"_s, By::Program);
        copy(shot);
        QTRY_VERIFY(m_copied);
        QCOMPARE(names(), QStringList{u"a.png"_s});
        m_writers.written = 0;
        QTRY_COMPARE(names(), QStringList{u"b.png"_s});
    }

    void theProgramLeavesAnEmptyFileAlone()
    {
        const QUrl place = picture(u"a.png"_s);
        const ScreenshotPointer shot = m_actions->open(place);
        bool isComplete = false;
        shot->whenComplete(this, [&isComplete] { isComplete = true; });
        QTRY_VERIFY(isComplete);
        TestFiles::write(place, {});
        m_renamed.outcome = Outcome::Failed;
        rename(shot, u"b.png"_s, By::Program);
        finish();
        QVERIFY(m_renamed.outcome == Outcome::Unchanged);
        QCOMPARE(names(), QStringList{u"a.png"_s});
        rename(shot, u"c.png"_s, By::User);
        finish();
        QCOMPARE(names(), QStringList{u"c.png"_s});
    }

    void aTypedNameKeepsTheProgramFromRenaming()
    {
        const QUrl place = picture(u"a.png"_s);
        m_writers.written = fileIdentity(place.toLocalFile())->serial;
        const ScreenshotPointer shot = m_actions->open(place);
        m_renamed.outcome = Outcome::Failed;
        rename(shot, u"b.png"_s, By::Program);
        shot->setNamedByUser();
        m_writers.written = 0;
        QTRY_VERIFY(m_renamed.outcome == Outcome::Unchanged);
        finish();
        QCOMPARE(names(), QStringList{u"a.png"_s});
    }

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
            m_actions->whenNotOwn(url, [&reported, url] { reported << url.fileName(); });
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

    void theMenuTakesTheNewestActionBack()
    {
        const QUrl place = picture(u"a.png"_s);
        const ScreenshotPointer shot = m_actions->open(place);
        rename(shot, u"b.png"_s);
        finish();
        m_actions->remember(UndoableAction::rename(place, m_files->url(u"b.png"_s)));
        QSignalSpy kept(m_actions.get(), &ScreenshotActions::kept);
        m_actions->undoLast();
        finish();
        QVERIFY(!m_history->canUndo());
        QCOMPARE(names(), QStringList{u"a.png"_s});
        QCOMPARE(kept.size(), 1);
        QCOMPARE(kept[0][0].toUrl(), place);
        // The screenshot is not informed.
        QCOMPARE(shot->url(), m_files->url(u"b.png"_s));
    }

    void theMenuTakesBackWhatIsStillUnderWay()
    {
        const QUrl place = picture(u"a.png"_s);
        m_actions->rename(m_actions->open(place), u"b.png"_s, By::User,
                          [this](const ScreenshotRename &done) {
                              m_actions->remember(
                                  UndoableAction::rename(done.result->oldURL, done.result->newURL));
                          });
        m_actions->undoLast();
        finish();
        QCOMPARE(names(), QStringList{u"a.png"_s});
    }

    void aMenusUndoThatFailsIsSilent_data()
    {
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("the old name is taken") << true;
        QTest::newRow("the file is gone") << false;
    }

    void aMenusUndoThatFailsIsSilent()
    {
        QFETCH(const bool, isTaken);
        const QUrl before = m_files->url(u"a.png"_s);
        const QUrl after = m_files->url(u"b.png"_s);
        TestFiles::write(isTaken ? before : m_files->url(u"c.png"_s), "somebody else's");
        if (isTaken)
            TestFiles::write(after, "own");
        const QStringList there = names();
        m_actions->remember(UndoableAction::rename(before, after));
        QSignalSpy kept(m_actions.get(), &ScreenshotActions::kept);
        m_actions->undoLast();
        finish();
        QVERIFY(!m_history->canUndo());
        QCOMPARE(kept.size(), 0);
        QCOMPARE(names(), there);
        m_actions->undoLast();
        finish();
        QCOMPARE(names(), there);
    }

    void aRowsUndoTakesOneEntryOutOfTheHistory()
    {
        const UndoableAction action =
            UndoableAction::rename(m_files->url(u"a.png"_s), m_files->url(u"b.png"_s));
        m_actions->remember(action);
        m_actions->remember(action);
        QSignalSpy kept(m_actions.get(), &ScreenshotActions::kept);
        m_actions->tookBack(action, action.before);
        QCOMPARE(m_history->actions().size(), 1);
        QCOMPARE(kept.size(), 1);
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

VELMORA_EVENTS_TEST(ScreenshotActionsTest)
#include "ScreenshotActionsTest.moc"
