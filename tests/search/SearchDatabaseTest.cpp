// SPDX-License-Identifier: MIT
#include "tests/search/SearchIndexFixture.h"

#include "tests/world/TestProgram.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

/// Another program that has the database open, and runs statements on it.
class OtherProgram
{
public:
    explicit OtherProgram(const QString &path)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, connection());
        database.setDatabaseName(path);
        database.open();
    }
    ~OtherProgram()
    {
        QSqlDatabase::database(connection(), false).close();
        QSqlDatabase::removeDatabase(connection());
    }
    Q_DISABLE_COPY_MOVE(OtherProgram)

    /// False if it is not open, too.
    bool run(const QString &statement) const
    {
        return QSqlQuery(QSqlDatabase::database(connection(), false)).exec(statement);
    }

private:
    static QString connection() { return u"other program"_s; }
};

} // namespace

/// What happens if the file that the index is stored in is damaged, locked or not ours.
class SearchDatabaseTest : public QObject, private SearchIndexFixture
{
    Q_OBJECT

    QUrl database() const { return FileUrls::fromPath(path()); }

private Q_SLOTS:
    void init() { begin(); }

    void whatIsNoneOfOursIsSetAside_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("no database") << QByteArray("This is a letter to my aunt.");
        QTest::newRow("half a database") << QByteArray("SQLite format 3\0 and then nothing", 33);
        QTest::newRow("a folder") << QByteArray();
    }

    void whatIsNoneOfOursIsSetAside()
    {
        QFETCH(const QByteArray, content);
        QVERIFY(QDir().mkpath(folder()));
        if (content.isEmpty())
            QVERIFY(QDir().mkpath(path()));
        else
            TestFiles::write(database(), content);
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
        QCOMPARE(asides(), QStringList{u"search.db.aside-1"_s});
        if (!content.isEmpty())
            QCOMPARE(TestFiles::read(FileUrls::fromPath(folder() + u'/' + asides().constFirst())),
                     content);
    }

    void whatIsNoFileIsSetAside_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind : {"pipe", "link", "dangling link"})
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }

    void whatIsNoFileIsSetAside()
    {
        QFETCH(const QString, kind);
        QVERIFY(QDir().mkpath(folder()));
        const QString target = m_data->filePath(u"letter"_s);
        if (kind == u"link")
            TestFiles::write(FileUrls::fromPath(target), "This is a letter to my aunt.");
        const QByteArray place = QFile::encodeName(path());
        if (kind == u"pipe")
            QCOMPARE(::mkfifo(place.constData(), 0600), 0);
        else
            QVERIFY(QFile::link(target, path()));
        SearchIndex index(folder());
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
        QCOMPARE(asides(), QStringList{u"search.db.aside-1"_s});
        if (kind == u"link")
            QCOMPARE(TestFiles::read(FileUrls::fromPath(target)), "This is a letter to my aunt.");
        QVERIFY(index.forget());
        QVERIFY(asides().isEmpty());
        QCOMPARE(QFile::exists(target), kind == u"link");
    }

    void anotherProgramsDatabaseIsSetAside()
    {
        QVERIFY(QDir().mkpath(folder()));
        QVERIFY(OtherProgram(path()).run(u"CREATE TABLE screenshots(letter TEXT)"_s));
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
        QCOMPARE(asides().size(), 1);
    }

    void aDatabaseWithSomethingUnknownIsSetAside_data()
    {
        QTest::addColumn<QString>("change");
        QTest::newRow("the same tables of another program") << u"PRAGMA application_id=1"_s;
        QTest::newRow("tables of a later version")
            << u"ALTER TABLE screenshots RENAME COLUMN path TO place"_s;
    }

    void aDatabaseWithSomethingUnknownIsSetAside()
    {
        QFETCH(const QString, change);
        {
            SearchIndex index(folder());
            screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        }
        QVERIFY(OtherProgram(path()).run(change));
        SearchIndex index(folder());
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        screenshot(index, u"two.png"_s, {u"harbour"_s});
        QCOMPARE(namesOf(index.find(u"harbour"_s, 10)), QStringList{u"two.png"_s});
        QCOMPARE(asides().size(), 1);
    }

    void wordsOfAnOlderVersionAreMadeAnewOfTheTexts()
    {
        {
            SearchIndex index(folder());
            screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        }
        {
            const OtherProgram older(path());
            QVERIFY(older.run(u"INSERT INTO words(words) VALUES('delete-all')"_s));
            QVERIFY(older.run(u"PRAGMA user_version=1"_s));
        }
        SearchIndex index(folder());
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        QVERIFY(!index.nextUnread());
        QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
    }

    void aDatabaseThatIsDamagedWhileItIsUsedIsBegunAnew_data()
    {
        QTest::addColumn<bool>("isSearched");
        QTest::newRow("a search notices it") << true;
        QTest::newRow("a change notices it") << false;
    }

    void aDatabaseThatIsDamagedWhileItIsUsedIsBegunAnew()
    {
        QFETCH(const bool, isSearched);
        const QStringList page = QString(u"word lighthouse "_s).repeated(400).split(u' ');
        {
            SearchIndex index(folder());
            for (int number = 0; number < 20; ++number)
                screenshot(index, u"%1.png"_s.arg(number), page);
        }
        {
            QFile file(path());
            QVERIFY(file.open(QFile::ReadWrite));
            QVERIFY(file.size() > 20'000);
            QVERIFY(file.seek(4096));
            file.write(QByteArray(int(file.size()) - 4096, '\x5a'));
        }
        SearchIndex index(folder());
        if (isSearched) {
            index.find(u"lighthouse"_s, 10);
            QCOMPARE(asides().size(), 1);
        }
        screenshot(index, u"after.png"_s, {u"harbour"_s});
        QCOMPARE(namesOf(index.find(u"harbour"_s, 10)), QStringList{u"after.png"_s});
        QCOMPARE(asides().size(), 1);
    }

    void aChangeThatFailsHalfwayChangesNothing()
    {
        SearchIndex index(folder());
        const QUrl known = screenshot(index, u"known.png"_s, {u"lighthouse"_s});
        const QUrl one = m_files->make(u"one.png"_s);
        const QUrl two = m_files->make(u"two.png"_s);
        QVERIFY(OtherProgram(path()).run(
            u"CREATE TRIGGER no_two BEFORE INSERT ON screenshots WHEN NEW.path LIKE '%two.png'"
            " BEGIN SELECT RAISE(ABORT, 'no'); END"_s));
        QVERIFY(!index.setFolder(m_files->folder(), {entryOf(two), entryOf(one)}));
        QCOMPARE(namesOf(index.find(u"lighthouse"_s, 10)), QStringList{u"known.png"_s});
        QVERIFY(index.find(u"one"_s, 10).isEmpty());
        QCOMPARE(index.progress().all, 1);

        QVERIFY(OtherProgram(path()).run(u"DROP TRIGGER no_two"_s));
        QVERIFY(index.setFolder(m_files->folder(), {entryOf(two), entryOf(one), entryOf(known)}));
        QCOMPARE(index.progress().all, 3);
        QVERIFY(asides().isEmpty());
    }

    void aLockedDatabaseLosesNothing()
    {
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        const QUrl late = m_files->make(u"late.png"_s);
        {
            // Like a program that is stopped in the middle of a write.
            const OtherProgram stopped(path());
            QVERIFY(stopped.run(u"BEGIN EXCLUSIVE"_s));
            QVERIFY(!index.add({entryOf(late)}));
            QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
        }
        QVERIFY(index.add({entryOf(late)}));
        QCOMPARE(index.find(u"late"_s, 10).size(), 1);
        QVERIFY(asides().isEmpty());
    }
};

VELMORA_EVENTS_TEST(SearchDatabaseTest)
#include "SearchDatabaseTest.moc"
