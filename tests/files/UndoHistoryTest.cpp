#include "files/UndoHistory.h"

#include "tests/files/FakeSystemTrash.h"
#include "tests/files/TestFiles.h"

#include <QSignalSpy>
#include <QTest>

namespace
{

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

class UndoHistoryTest : public QObject
{
    Q_OBJECT

    FakeSystemTrash m_trash;
    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<UndoHistory> m_history;

    /// Renames a real file.
    UndoableAction rename(const QString &from, const QString &to) const
    {
        const QUrl old = m_files->make(from);
        QFile::rename(old.toLocalFile(), m_files->url(to).toLocalFile());
        return UndoableAction::rename(old, m_files->url(to));
    }
    /// An action on no file at all.
    UndoableAction numbered(int number) const
    {
        return UndoableAction::rename(m_files->url(QString::number(number)),
                                      m_files->url(s("new")));
    }

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<TestFiles>();
        m_history = std::make_unique<UndoHistory>(m_trash);
    }

    void anEmptyHistoryHasNothingToUndo()
    {
        QCOMPARE(m_history->title(), s("Undo Last Action"));
        QVERIFY(!m_history->canUndo());
        const QSignalSpy changes(m_history.get(), &UndoHistory::changed);
        QVERIFY(!m_history->undoLast());
        QCOMPARE(changes.size(), 0);
    }

    void theTitleTellsTheNewestKind()
    {
        const QSignalSpy changes(m_history.get(), &UndoHistory::changed);
        m_history->push(UndoableAction::rename(m_files->url(s("a")), m_files->url(s("b"))));
        QCOMPARE(m_history->title(), s("Undo Rename"));
        QVERIFY(m_history->canUndo());
        m_history->push(UndoableAction::trash(m_files->url(s("b")), m_files->url(s("c"))));
        QCOMPARE(m_history->title(), s("Undo Trash"));
        QCOMPARE(changes.size(), 2);
        m_history->undoLast();
        QCOMPARE(m_history->title(), s("Undo Rename"));
        m_history->undoLast();
        QCOMPARE(m_history->title(), s("Undo Last Action"));
        QCOMPARE(changes.size(), 4);
    }

    void elevenPushesLeaveTheTenNewest()
    {
        for (int i = 1; i <= 11; ++i)
            m_history->push(numbered(i));
        QCOMPARE(m_history->actions().size(), 10);
        for (int i = 2; i <= 11; ++i)
            QVERIFY(m_history->actions().at(i - 2) == numbered(i));
    }

    void theNewestIsUndoneFirst()
    {
        m_history->push(rename(s("a.png"), s("b.png")));
        const QUrl other = m_files->make(s("other.png"));
        m_history->push(UndoableAction::trash(other, *m_trash.trash(other).location));
        QCOMPARE(m_history->undoLast(), other);
        QCOMPARE(TestFiles::read(other), QByteArray("other.png"));
        QVERIFY(FileUrls::exists(m_files->url(s("b.png"))));
        QCOMPARE(m_history->undoLast(), m_files->url(s("a.png")));
        QCOMPARE(TestFiles::read(m_files->url(s("a.png"))), QByteArray("a.png"));
        QVERIFY(!m_history->canUndo());
    }

    void aFileRenamedTwiceComesBackInTwoSteps()
    {
        m_history->push(rename(s("a.png"), s("b.png")));
        QVERIFY(QFile::rename(m_files->url(s("b.png")).toLocalFile(),
                              m_files->url(s("c.png")).toLocalFile()));
        m_history->push(UndoableAction::rename(m_files->url(s("b.png")), m_files->url(s("c.png"))));
        QVERIFY(m_history->undoLast());
        QVERIFY(m_history->undoLast());
        QCOMPARE(TestFiles::read(m_files->url(s("a.png"))), QByteArray("a.png"));
    }

    void aTakenOldNameFailsSilentlyAndTheEntryIsGone()
    {
        m_history->push(UndoableAction::trash(m_files->url(s("x")), m_files->url(s("y"))));
        m_history->push(rename(s("a.png"), s("b.png")));
        TestFiles::write(m_files->url(s("a.png")), "somebody else's");
        const QSignalSpy changes(m_history.get(), &UndoHistory::changed);
        QVERIFY(!m_history->undoLast());
        QCOMPARE(TestFiles::read(m_files->url(s("a.png"))), QByteArray("somebody else's"));
        QCOMPARE(TestFiles::read(m_files->url(s("b.png"))), QByteArray("a.png"));
        QCOMPARE(m_history->actions().size(), 1);
        QCOMPARE(m_history->title(), s("Undo Trash"));
        QCOMPARE(changes.size(), 1);
    }

    void aMissingFileFailsSilentlyAndTheEntryIsGone()
    {
        m_history->push(rename(s("a.png"), s("b.png")));
        QVERIFY(QFile::remove(m_files->url(s("b.png")).toLocalFile()));
        QVERIFY(!m_history->undoLast());
        QVERIFY(!m_history->canUndo());
    }

    void aMoveThatFailsIsSilentAndTheEntryIsGone()
    {
        const QUrl file = m_files->make(s("b.png"));
        m_history->push(UndoableAction::rename(m_files->url(s("no/folder/a.png")), file));
        QVERIFY(!m_history->undoLast());
        QVERIFY(FileUrls::exists(file));
        QVERIFY(!m_history->canUndo());
    }

    void ofEqualActionsOnlyTheNewestIsRemoved()
    {
        m_history->push(numbered(1));
        m_history->push(numbered(2));
        m_history->push(numbered(1));
        QCOMPARE(m_history->actions().size(), 3);
        const QSignalSpy changes(m_history.get(), &UndoHistory::changed);
        m_history->remove(numbered(1));
        QVERIFY(m_history->actions() == (QList<UndoableAction>{numbered(1), numbered(2)}));
        QCOMPARE(changes.size(), 1);
    }

    void removingWhatIsNotThereChangesNothing()
    {
        m_history->push(numbered(1));
        m_history->remove(numbered(2));
        QVERIFY(m_history->actions() == QList<UndoableAction>{numbered(1)});
    }
};

QTEST_GUILESS_MAIN(UndoHistoryTest)
#include "UndoHistoryTest.moc"
