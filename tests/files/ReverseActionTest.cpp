// SPDX-License-Identifier: MIT
#include "files/reverseAction.h"

#include "filesystem/FileUrls.h"
#include "tests/fakes/FakeSystemTrash.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QTest>

class ReverseActionTest : public QObject
{
    Q_OBJECT

    static QString s(const char *text) { return QString::fromUtf8(text); }

    /// Performs an action of this kind on the file "old.png".
    static UndoableAction done(UndoableAction::Kind kind, const TestFiles &files,
                               FakeSystemTrash &trash)
    {
        const QUrl old = files.make(s("old.png"));
        if (kind == UndoableAction::Kind::Trash)
            return UndoableAction::trash(old, *trash.trash(old).location);
        QFile::rename(old.toLocalFile(), files.url(s("new.png")).toLocalFile());
        return UndoableAction::rename(old, files.url(s("new.png")));
    }

    static void addKinds()
    {
        QTest::addColumn<UndoableAction::Kind>("kind");
        QTest::newRow("rename") << UndoableAction::Kind::Rename;
        QTest::newRow("trash") << UndoableAction::Kind::Trash;
    }

private Q_SLOTS:
    void theFileComesBack_data() { addKinds(); }
    void theFileComesBack()
    {
        QFETCH(UndoableAction::Kind, kind);
        const TestFiles files;
        FakeSystemTrash trash;
        const UndoableAction action = done(kind, files, trash);
        QVERIFY(!FileUrls::exists(action.before));
        QVERIFY(!reverseAction(trash, action));
        QCOMPARE(TestFiles::read(action.before), QByteArray("old.png"));
        QVERIFY(!FileUrls::exists(action.after));
    }

    void aMissingSourceFails_data() { addKinds(); }
    void aMissingSourceFails()
    {
        QFETCH(UndoableAction::Kind, kind);
        const TestFiles files;
        FakeSystemTrash trash;
        const UndoableAction action = done(kind, files, trash);
        QVERIFY(QFile::remove(action.after.toLocalFile()));
        QVERIFY(reverseAction(trash, action) == std::errc::no_such_file_or_directory);
        QVERIFY(!FileUrls::exists(action.before));
    }

    void anOccupiedDestinationFailsAndIsLeftAlone_data() { addKinds(); }
    void anOccupiedDestinationFailsAndIsLeftAlone()
    {
        QFETCH(UndoableAction::Kind, kind);
        const TestFiles files;
        FakeSystemTrash trash;
        const UndoableAction action = done(kind, files, trash);
        TestFiles::write(action.before, "somebody else's");
        QVERIFY(reverseAction(trash, action) == std::errc::file_exists);
        QCOMPARE(TestFiles::read(action.before), QByteArray("somebody else's"));
        QCOMPARE(TestFiles::read(action.after), QByteArray("old.png"));
    }

    void aMoveThatFailsIsReported_data() { addKinds(); }
    void aMoveThatFailsIsReported()
    {
        QFETCH(UndoableAction::Kind, kind);
        const TestFiles files;
        FakeSystemTrash trash;
        UndoableAction action = done(kind, files, trash);
        action.before = files.url(s("no/such/folder/old.png"));
        QVERIFY(reverseAction(trash, action));
        QCOMPARE(TestFiles::read(action.after), QByteArray("old.png"));
    }

    void onlyTheSameActionIsEqual()
    {
        const TestFiles files;
        const QUrl a = files.url(s("a.png"));
        const QUrl b = files.url(s("b.png"));
        QVERIFY(UndoableAction::rename(a, b) == UndoableAction::rename(a, b));
        QVERIFY(UndoableAction::rename(a, b) != UndoableAction::rename(b, a));
        QVERIFY(UndoableAction::rename(a, b) != UndoableAction::rename(a, a));
        QVERIFY(UndoableAction::rename(a, b) != UndoableAction::trash(a, b));
    }
};

VELMORA_EVENTS_TEST(ReverseActionTest)
#include "ReverseActionTest.moc"
