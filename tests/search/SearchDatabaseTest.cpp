// SPDX-License-Identifier: MIT
#include "tests/search/SearchIndexFixture.h"

#include "tests/world/TestProgram.h"

#include <QFileInfo>
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

/// The file that the index is stored in: who may read it, and what happens if it is damaged, locked
/// or not ours.
class SearchDatabaseTest : public QObject, private SearchIndexFixture
{
    Q_OBJECT

    QUrl database() const { return FileUrls::fromPath(path()); }

private Q_SLOTS:
    void init() { begin(); }

    void onlyItsOwnerMayReadIt()
    {
        QVERIFY(QDir().mkpath(folder()));
        ::chmod(qPrintable(folder()), 0755);
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        const auto mode = [](const QString &path) {
            struct stat status = {};
            ::stat(qPrintable(path), &status);
            return status.st_mode & 0777;
        };
        QCOMPARE(mode(folder()), mode_t(0700));
        const QStringList files = QDir(folder()).entryList(QDir::Files | QDir::Hidden);
        QVERIFY(files.size() > 1);
        for (const QString &name : files)
            QCOMPARE(mode(folder() + u'/' + name), mode_t(0600));
    }

    void secretsAreNotInTheFile()
    {
        {
            SearchIndex index(folder());
            screenshot(index, u"one.png"_s, {u"Password: hunter2secret"_s, u"lighthouse"_s});
            QVERIFY(index.find(u"hunter2secret"_s, 10).isEmpty());
            QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
        }
        QByteArray bytes;
        for (const QFileInfo &file : QDir(folder()).entryInfoList(QDir::Files))
            bytes += TestFiles::read(FileUrls::fromPath(file.filePath()));
        QVERIFY(bytes.contains("lighthouse"));
        QVERIFY(!bytes.contains("hunter2secret"));
    }

    void aSearchMakesNoFile()
    {
        SearchIndex index(folder());
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        QVERIFY(!QFileInfo::exists(folder()));
    }

    void forgettingDeletesAllThatWasStored()
    {
        QVERIFY(QDir().mkpath(folder()));
        TestFiles::write(database(), "no database");
        TestFiles::write(FileUrls::fromPath(folder() + u"/else"_s), "not ours");
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        QVERIFY(!asides().isEmpty());
        QVERIFY(index.forget());
        QCOMPARE(QDir(folder()).entryList(QDir::Files | QDir::Hidden), QStringList{u"else"_s});
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
    }

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

    /// With other tables than this version knows.
    void aDatabaseOfALaterVersionIsSetAside()
    {
        {
            SearchIndex index(folder());
            screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        }
        QVERIFY(OtherProgram(path()).run(u"ALTER TABLE screenshots RENAME COLUMN path TO place"_s));
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

    void aDatabaseThatIsDamagedWhileItIsUsedIsBegunAnew()
    {
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
        index.find(u"lighthouse"_s, 10);
        screenshot(index, u"after.png"_s, {u"harbour"_s});
        QCOMPARE(namesOf(index.find(u"harbour"_s, 10)), QStringList{u"after.png"_s});
        QCOMPARE(asides().size(), 1);
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
