// SPDX-License-Identifier: MIT
#include "files/UndoHistory.h"

#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class UndoHistoryTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<UndoHistory> m_history;

    /// An action on a file that does not exist.
    UndoableAction numbered(int number) const
    {
        return UndoableAction::rename(m_files->url(QString::number(number)),
                                      m_files->url(u"new"_s));
    }

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<TestFiles>();
        m_history = std::make_unique<UndoHistory>();
    }

    void anEmptyHistoryHasNothingToUndo()
    {
        QCOMPARE(m_history->title(), u"Undo Last Action"_s);
        QVERIFY(!m_history->canUndo());
        const QSignalSpy changes(m_history.get(), &UndoHistory::changed);
        QVERIFY(!m_history->takeNewest());
        QCOMPARE(changes.size(), 0);
    }

    void theTitleTellsTheNewestKind()
    {
        const QSignalSpy changes(m_history.get(), &UndoHistory::changed);
        m_history->push(UndoableAction::rename(m_files->url(u"a"_s), m_files->url(u"b"_s)));
        QCOMPARE(m_history->title(), u"Undo Rename"_s);
        QVERIFY(m_history->canUndo());
        m_history->push(UndoableAction::trash(m_files->url(u"b"_s), m_files->url(u"c"_s)));
        QCOMPARE(m_history->title(), u"Undo Trash"_s);
        QCOMPARE(changes.size(), 2);
        m_history->takeNewest();
        QCOMPARE(m_history->title(), u"Undo Rename"_s);
        m_history->takeNewest();
        QCOMPARE(m_history->title(), u"Undo Last Action"_s);
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

    void theNewestIsTakenFirst()
    {
        for (int i = 1; i <= 3; ++i)
            m_history->push(numbered(i));
        const QSignalSpy changes(m_history.get(), &UndoHistory::changed);
        for (int i = 3; i >= 1; --i)
            QVERIFY(m_history->takeNewest() == numbered(i));
        QVERIFY(!m_history->canUndo());
        QCOMPARE(changes.size(), 3);
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

VELMORA_EVENTS_TEST(UndoHistoryTest)
#include "UndoHistoryTest.moc"
