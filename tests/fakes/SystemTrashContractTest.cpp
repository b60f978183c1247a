// SPDX-License-Identifier: MIT
#include "tests/fakes/FakeSystemTrash.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QTest>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

using MakeTrash = std::function<std::unique_ptr<SystemTrash>()>;
Q_DECLARE_METATYPE(MakeTrash)

/// What every trash promises, checked on the real one and on the one that other tests use.
class SystemTrashContractTest : public QObject
{
    Q_OBJECT

    const TestFiles m_files{};

    static void addMakers()
    {
        QTest::addColumn<MakeTrash>("make");
        QTest::newRow("real") << MakeTrash(makeSystemTrash);
        QTest::newRow("fake") << MakeTrash([] { return std::make_unique<FakeSystemTrash>(); });
    }

private Q_SLOTS:
    void cleanup()
    {
        const QDir folder(m_files.folder().toLocalFile());
        for (const QString &name : folder.entryList(QDir::Files))
            QVERIFY(QFile::remove(folder.filePath(name)));
    }

    void aTrashedFileLiesWhereTheTrashSays_data() { addMakers(); }
    void aTrashedFileLiesWhereTheTrashSays()
    {
        QFETCH(MakeTrash, make);
        const QUrl shot = m_files.make(u"Shot.png"_s);
        const SystemTrash::Trashed trashed = make()->trash(shot);
        QVERIFY(!trashed.error);
        QVERIFY(!FileUrls::exists(shot));
        QVERIFY(trashed.location);
    }

    void filesOfOneNameDoNotReplaceEachOther_data() { addMakers(); }
    void filesOfOneNameDoNotReplaceEachOther()
    {
        QFETCH(MakeTrash, make);
        const auto trash = make();
        const auto first = trash->trash(m_files.make(u"Shot.png"_s, "first"));
        const auto second = trash->trash(m_files.make(u"Shot.png"_s, "second"));
        QVERIFY(first.location != second.location);
        QCOMPARE(TestFiles::read(*first.location), QByteArray("first"));
        QCOMPARE(TestFiles::read(*second.location), QByteArray("second"));
    }

    void aMissingFileIsAnError_data() { addMakers(); }
    void aMissingFileIsAnError()
    {
        QFETCH(MakeTrash, make);
        const SystemTrash::Trashed trashed = make()->trash(m_files.url(u"gone.png"_s));
        QVERIFY(trashed.error == std::errc::no_such_file_or_directory);
        QVERIFY(!trashed.location);
    }

    void aRestoredFileIsBack_data() { addMakers(); }
    void aRestoredFileIsBack()
    {
        QFETCH(MakeTrash, make);
        const auto trash = make();
        const QUrl shot = m_files.make(u"Shot.png"_s);
        const QUrl trashed = *trash->trash(shot).location;
        QVERIFY(!trash->restore(trashed, shot));
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
        QVERIFY(!FileUrls::exists(trashed));
    }

    void restoringReplacesNothing_data() { addMakers(); }
    void restoringReplacesNothing()
    {
        QFETCH(MakeTrash, make);
        const auto trash = make();
        const QUrl shot = m_files.make(u"Shot.png"_s);
        const QUrl trashed = *trash->trash(shot).location;
        TestFiles::write(shot, "somebody else's");
        QVERIFY(trash->restore(trashed, shot) == std::errc::file_exists);
        QCOMPARE(TestFiles::read(shot), QByteArray("somebody else's"));
        QCOMPARE(TestFiles::read(trashed), QByteArray("Shot.png"));
    }

    void restoringWhatIsGoneIsAnError_data() { addMakers(); }
    void restoringWhatIsGoneIsAnError()
    {
        QFETCH(MakeTrash, make);
        const auto trash = make();
        const QUrl shot = m_files.make(u"Shot.png"_s);
        const QUrl trashed = *trash->trash(shot).location;
        QVERIFY(QFile::remove(trashed.toLocalFile()));
        QVERIFY(trash->restore(trashed, shot) == std::errc::no_such_file_or_directory);
        QVERIFY(!FileUrls::exists(shot));
    }

    void aFileFromElsewhereIsRestoredToo_data() { addMakers(); }
    void aFileFromElsewhereIsRestoredToo()
    {
        QFETCH(MakeTrash, make);
        const QUrl elsewhere = m_files.make(u"elsewhere.png"_s);
        QVERIFY(!make()->restore(elsewhere, m_files.url(u"back.png"_s)));
        QCOMPARE(TestFiles::read(m_files.url(u"back.png"_s)), QByteArray("elsewhere.png"));
    }
};

VELMORA_EVENTS_TEST(SystemTrashContractTest)
#include "SystemTrashContractTest.moc"
