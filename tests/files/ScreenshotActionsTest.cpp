// SPDX-License-Identifier: MIT
#include "tests/files/ScreenshotActionsFixture.h"
#include "tests/world/TestProgram.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// Renaming, trashing and undoing, and what becomes of a screenshot and its file.
class ScreenshotActionsTest : public QObject, ScreenshotActionsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

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

    void eachMoveIsReportedToTheDesktop()
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
        shot->closeFile();
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

    void anUndoFromTheMenuIsReportedToTheDesktop()
    {
        const QUrl a = picture(u"a.png"_s);
        const QUrl b = m_files->url(u"b.png"_s);
        m_history->push(UndoableAction::rename(b, a));
        m_actions->undoLast();
        finish();
        QCOMPARE(m_records.moves, (QList<std::pair<QUrl, QUrl>>{{a, b}}));
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
        m_actions->noteUndone(action, action.before);
        QCOMPARE(m_history->actions().size(), 1);
        QCOMPARE(kept.size(), 1);
    }
};

VELMORA_EVENTS_TEST(ScreenshotActionsTest)
#include "ScreenshotActionsTest.moc"
