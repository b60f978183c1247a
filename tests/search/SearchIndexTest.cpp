// SPDX-License-Identifier: MIT
#include "search/SearchIndex.h"

#include "tests/files/TestFiles.h"
#include "tests/world/PrivateMount.h"
#include "tests/world/TestProgram.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

using Place = SearchIndex::Place;

FileIdentity identityOf(const QUrl &url)
{
    return fileIdentity(url.toLocalFile()).value_or(FileIdentity());
}

SearchIndex::Entry entryOf(const QUrl &url, const QString &application = {})
{
    return {url, identityOf(url), application};
}

QStringList namesOf(const QList<SearchHit> &hits)
{
    QStringList names;
    for (const SearchHit &hit : hits)
        names << FileUrls::lastPathComponent(hit.url);
    return names;
}

/// Locks the database, like another program that is stopped in the middle of a write.
class Holder
{
public:
    explicit Holder(const QString &path)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"holder"_s);
        database.setDatabaseName(path);
        m_holds = database.open() && QSqlQuery(database).exec(u"BEGIN EXCLUSIVE"_s);
    }
    ~Holder()
    {
        QSqlDatabase::database(u"holder"_s, false).close();
        QSqlDatabase::removeDatabase(u"holder"_s);
    }

    bool holds() const { return m_holds; }

private:
    bool m_holds = false;
};

} // namespace

/// The index on real files and a real database.
class SearchIndexTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<QTemporaryDir> m_data;

    QString folder() const { return m_data->filePath(u"velmora"_s); }
    QString path() const { return folder() + u"/search.db"_s; }

    /// Adds a screenshot that has already been read.
    QUrl screenshot(SearchIndex &index, const QString &name, const QStringList &lines,
                    const QString &application = {}) const
    {
        const QUrl url = m_files->make(name);
        if (!index.add({entryOf(url, application)}) || !index.setText(identityOf(url), lines))
            qFatal("can't store a screenshot");
        return url;
    }
    QStringList asides() const
    {
        return QDir(folder()).entryList({u"search.db.aside-*"_s},
                                        QDir::AllEntries | QDir::Hidden | QDir::System);
    }

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<TestFiles>();
        m_data = std::make_unique<QTemporaryDir>();
    }

    void aScreenshotIsFoundByALineOfItsText()
    {
        SearchIndex index(folder());
        const QUrl url = screenshot(index, u"one.png"_s, {u"Title"_s, u"The Café opens at nine"_s});
        screenshot(index, u"two.png"_s, {u"Another page"_s});
        const QList<SearchHit> hits = index.find(u"cafe OPEN"_s, 10);
        QCOMPARE(hits, QList<SearchHit>({{url, u"The Café opens at nine"_s}}));
    }

    void severalWordsMeanAllOfThemAndEachIsABeginning()
    {
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"harvest festival"_s});
        screenshot(index, u"two.png"_s, {u"harvest report"_s});
        QCOMPARE(index.find(u"harv"_s, 10).size(), 2);
        QCOMPARE(namesOf(index.find(u"harv fest"_s, 10)), QStringList{u"one.png"_s});
        QVERIFY(index.find(u"arvest"_s, 10).isEmpty());
        QVERIFY(index.find(u"harvest absent"_s, 10).isEmpty());
        QVERIFY(index.find(u" \"* "_s, 10).isEmpty());
    }

    void itsNameAndItsApplicationFindItBeforeItIsRead()
    {
        SearchIndex index(folder());
        const QUrl url = m_files->make(u"ferry-timetable.png"_s);
        QVERIFY(index.add({entryOf(url, u"Navigator"_s)}));
        QCOMPARE(index.find(u"timetable"_s, 10), QList<SearchHit>({{url, {}}}));
        QCOMPARE(index.find(u"naviga ferry"_s, 10).size(), 1);
        QCOMPARE(index.nextUnread().value().url, url);
        QVERIFY(index.setText(identityOf(url), {}));
        QVERIFY(!index.nextUnread());
        QCOMPARE(index.progress().read, 1);
    }

    void aNameCountsMoreThanTheTextAndTheNewestComesFirst()
    {
        SearchIndex index(folder());
        const auto age = [](const QUrl &url, int days) {
            QFile file(url.toLocalFile());
            QVERIFY(file.open(QFile::ReadWrite));
            QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-days),
                                     QFile::FileModificationTime));
        };
        const QUrl oldest = m_files->make(u"a.png"_s);
        const QUrl newest = m_files->make(u"b.png"_s);
        const QUrl named = m_files->make(u"ferry.png"_s);
        age(oldest, 3);
        age(newest, 1);
        age(named, 9);
        for (const QUrl &url : {newest, oldest, named}) {
            QVERIFY(index.add({entryOf(url)}));
            QVERIFY(index.setText(identityOf(url), {u"the ferry leaves"_s}));
        }
        QCOMPARE(namesOf(index.find(u"ferry"_s, 10)),
                 QStringList({u"ferry.png"_s, u"b.png"_s, u"a.png"_s}));
    }

    void aRenamedFileIsFoundUnderItsNewName()
    {
        SearchIndex index(folder());
        const QUrl old = screenshot(index, u"first.png"_s, {u"lighthouse"_s});
        const QUrl now = m_files->url(u"second.png"_s);
        QVERIFY(QFile::rename(old.toLocalFile(), now.toLocalFile()));
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        QVERIFY(index.moved(old, now, Place::Folder));
        QCOMPARE(namesOf(index.find(u"lighthouse"_s, 10)), QStringList{u"second.png"_s});
        QCOMPARE(index.find(u"second"_s, 10).size(), 1);
        QVERIFY(index.find(u"first"_s, 10).isEmpty());
        QVERIFY(!index.nextUnread());
    }

    void aFileInTheTrashIsNotFoundUntilItIsTakenBack()
    {
        SearchIndex index(folder());
        const QUrl place = screenshot(index, u"first.png"_s, {u"lighthouse"_s});
        const QUrl trash = m_files->url(u"trash.2.png"_s);
        QVERIFY(QFile::rename(place.toLocalFile(), trash.toLocalFile()));
        QVERIFY(index.moved(place, trash, Place::Trash));
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        QVERIFY(QFile::rename(trash.toLocalFile(), place.toLocalFile()));
        QVERIFY(index.moved(trash, place, Place::Folder));
        QCOMPARE(namesOf(index.find(u"lighthouse first"_s, 10)), QStringList{u"first.png"_s});
        QVERIFY(!index.nextUnread());
        QVERIFY(index.find(u"trash"_s, 10).isEmpty());
    }

    void aFileThatIsGoneIsFoundNoMoreAndForgotten()
    {
        SearchIndex index(folder());
        const QUrl gone = screenshot(index, u"gone.png"_s, {u"lighthouse"_s});
        const QUrl stays = screenshot(index, u"stays.png"_s, {u"lighthouse"_s});
        QVERIFY(QFile::remove(gone.toLocalFile()));
        QCOMPARE(namesOf(index.find(u"lighthouse"_s, 10)), QStringList{u"stays.png"_s});
        QVERIFY(index.setFolder(m_files->folder(), {entryOf(stays)}));
        QCOMPARE(index.progress().all, 1);
        // Another file with the same name does not have its text.
        m_files->make(u"gone.png"_s, "else");
        QCOMPARE(namesOf(index.find(u"lighthouse"_s, 10)), QStringList{u"stays.png"_s});
    }

    void theFolderTellsWhatOthersHaveRenamedAddedAndChanged()
    {
        SearchIndex index(folder());
        const QUrl old = screenshot(index, u"old.png"_s, {u"lighthouse"_s});
        const QUrl changed = screenshot(index, u"changed.png"_s, {u"harbour"_s});
        const QUrl now = m_files->url(u"now.png"_s);
        QVERIFY(QFile::rename(old.toLocalFile(), now.toLocalFile()));
        TestFiles::write(changed, "another content");
        const QUrl added = m_files->make(u"added.png"_s);
        QVERIFY(
            index.setFolder(m_files->folder(), {entryOf(now), entryOf(added), entryOf(changed)}));
        QCOMPARE(namesOf(index.find(u"lighthouse"_s, 10)), QStringList{u"now.png"_s});
        QCOMPARE(index.find(u"added"_s, 10).size(), 1);
        QCOMPARE(index.progress().all, 3);
        QCOMPARE(index.progress().read, 1);
    }

    void whatWasReadOfAnOlderContentIsNotStored()
    {
        SearchIndex index(folder());
        const QUrl url = m_files->make(u"one.png"_s);
        const FileIdentity before = identityOf(url);
        TestFiles::write(url, "longer than before");
        QVERIFY(index.add({entryOf(url)}));
        QVERIFY(index.setText(before, {u"lighthouse"_s}));
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        QVERIFY(index.nextUnread());
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

    void aSearchMakesNoFile()
    {
        SearchIndex index(folder());
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        QVERIFY(!QFileInfo::exists(folder()));
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
            TestFiles::write(FileUrls::fromPath(path()), content);
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

    /// With other tables than this version knows.
    void aDatabaseOfALaterVersionIsSetAside()
    {
        {
            SearchIndex index(folder());
            screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        }
        {
            QSqlDatabase later = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"later"_s);
            later.setDatabaseName(path());
            QVERIFY(later.open());
            QVERIFY(
                QSqlQuery(later).exec(u"ALTER TABLE screenshots RENAME COLUMN path TO place"_s));
            later.close();
        }
        QSqlDatabase::removeDatabase(u"later"_s);
        SearchIndex index(folder());
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        screenshot(index, u"two.png"_s, {u"harbour"_s});
        QCOMPARE(namesOf(index.find(u"harbour"_s, 10)), QStringList{u"two.png"_s});
        QCOMPARE(asides().size(), 1);
    }

    void aDiskThatVanishesCostsNothingButTheIndex()
    {
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        QVERIFY(QDir(folder()).removeRecursively());
        TestFiles::write(FileUrls::fromPath(folder()), "in the way");
        index.find(u"lighthouse"_s, 10);
        index.add({entryOf(m_files->make(u"two.png"_s))});
        index.close();
        QVERIFY(!index.add({entryOf(m_files->make(u"two.png"_s))}));
        QVERIFY(index.find(u"two"_s, 10).isEmpty());
        QCOMPARE(TestFiles::read(FileUrls::fromPath(folder())), "in the way");
        QVERIFY(QFile::remove(folder()));
        QVERIFY(index.add({entryOf(m_files->make(u"two.png"_s))}));
        QCOMPARE(index.find(u"two"_s, 10).size(), 1);
    }

    void noQueryBreaksTheSearch_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<bool>("isFound");
        QTest::newRow("quotes") << u"\"light\"\"house' \" -- ;"_s << false;
        QTest::newRow("operators") << u"lighthouse NEAR(keeper, 2)"_s << false;
        QTest::newRow("a column") << u"text:lighthouse"_s << false;
        QTest::newRow("asterisks") << u"*light* ^light (light) {light} +light"_s << true;
        QTest::newRow("nothing but signs") << u"\"*^:(){}-+"_s << false;
        QTest::newRow("zero") << (u"light"_s + QChar(0) + u"house keeper"_s) << false;
        QTest::newRow("lone surrogates")
            << (u"light "_s + QChar(0xd800) + QChar(0xd800) + u" keeper"_s + QChar(0xdfff)) << true;
        QTest::newRow("one long word") << QString(100'000, u'x') << false;
        QTest::newRow("many words") << u"light "_s.repeated(20'000) << true;
        QTest::newRow("many different words") << [] {
            QString words;
            for (int number = 0; number < 20'000; ++number)
                words += u"w%1 "_s.arg(number);
            return words;
        }() << false;
        QTest::newRow("a long Chinese text") << QString(100'000, QChar(0x706f)) << false;
        QTest::newRow("marks") << QString(100'000, QChar(0x0301)) << false;
    }

    /// As it may be pasted.
    void noQueryBreaksTheSearch()
    {
        QFETCH(const QString, words);
        QFETCH(const bool, isFound);
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s,
                   {u"The lighthouse and its keeper"_s, QString(QChar(0x706f))});
        QCOMPARE(index.find(words, 10).size(), isFound ? 1 : 0);
        QVERIFY(asides().isEmpty());
        QCOMPARE(index.find(u"light"_s, 10).size(), 1);
    }

    void aVeryLongPageIsFoundByItsLastWord()
    {
        QStringList lines;
        for (int number = 0; number < 5'000; ++number)
            lines << u"line %1 of a long page"_s.arg(number);
        lines << QString(100'000, u'y') << (QString(QChar(0xd800)) + QChar(0)) << u"lighthouse"_s;
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, lines);
        QCOMPARE(index.find(u"lighthouse"_s, 10).value(0).line, u"lighthouse"_s);
    }

    void anotherProgramsDatabaseIsSetAside()
    {
        QVERIFY(QDir().mkpath(folder()));
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
            other.setDatabaseName(path());
            QVERIFY(other.open());
            QVERIFY(QSqlQuery(other).exec(u"CREATE TABLE screenshots(letter TEXT)"_s));
            other.close();
        }
        QSqlDatabase::removeDatabase(u"other"_s);
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
        QCOMPARE(asides().size(), 1);
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
            const Holder holder(path());
            QVERIFY(holder.holds());
            QVERIFY(!index.add({entryOf(late)}));
            QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
        }
        QVERIFY(index.add({entryOf(late)}));
        QCOMPARE(index.find(u"late"_s, 10).size(), 1);
        QVERIFY(asides().isEmpty());
    }

    void aFullDiskLosesNothing()
    {
        PrivateMount disk("size=1m");
        if (!disk)
            QSKIP(PrivateMount::unavailable);
        SearchIndex index(disk.filePath(u"velmora"_s));
        const QUrl early = m_files->make(u"early.png"_s);
        QVERIFY(index.add({entryOf(early)}));
        disk.fill();
        QStringList lines;
        for (int line = 0; line < 20'000; ++line)
            lines << u"lighthouse number %1"_s.arg(line);
        QVERIFY(!index.setText(identityOf(early), lines));
        QCOMPARE(index.find(u"early"_s, 10).size(), 1);
        QVERIFY(QFile::remove(disk.filePath(u"filling"_s)));
        QVERIFY(index.setText(identityOf(early), {u"lighthouse"_s}));
        QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
    }

    void aReadOnlyDiskIsLeftAlone()
    {
        PrivateMount disk("size=4m");
        if (!disk)
            QSKIP(PrivateMount::unavailable);
        const QString place = disk.filePath(u"velmora"_s);
        SearchIndex(place).find(u"x"_s, 1);
        const QUrl early = m_files->make(u"early.png"_s);
        {
            SearchIndex index(place);
            QVERIFY(index.add({entryOf(early)}));
        }
        disk.setReadOnly(true);
        {
            SearchIndex index(place);
            QVERIFY(!index.setText(identityOf(early), {u"lighthouse"_s}));
            index.find(u"early"_s, 10);
        }
        disk.setReadOnly(false);
        SearchIndex index(place);
        QVERIFY(index.setText(identityOf(early), {u"lighthouse"_s}));
        QCOMPARE(index.find(u"lighthouse early"_s, 10).size(), 1);
        QCOMPARE(QDir(place).entryList({u"*aside*"_s}).size(), 0);
    }

    void wordsOfAnOlderVersionAreMadeAnewOfTheTexts()
    {
        {
            SearchIndex index(folder());
            screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        }
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"older"_s);
            database.setDatabaseName(path());
            QVERIFY(database.open());
            QSqlQuery query(database);
            QVERIFY(query.exec(u"INSERT INTO words(words) VALUES('delete-all')"_s));
            QVERIFY(query.exec(u"PRAGMA user_version=1"_s));
            database.close();
        }
        QSqlDatabase::removeDatabase(u"older"_s);
        SearchIndex index(folder());
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
        QVERIFY(!index.nextUnread());
        QCOMPARE(index.find(u"lighthouse"_s, 10).size(), 1);
    }

    void forgettingDeletesAllThatWasStored()
    {
        QVERIFY(QDir().mkpath(folder()));
        TestFiles::write(FileUrls::fromPath(path()), "no database");
        TestFiles::write(FileUrls::fromPath(folder() + u"/else"_s), "not ours");
        SearchIndex index(folder());
        screenshot(index, u"one.png"_s, {u"lighthouse"_s});
        QVERIFY(!asides().isEmpty());
        QVERIFY(index.forget());
        QCOMPARE(QDir(folder()).entryList(QDir::Files | QDir::Hidden), QStringList{u"else"_s});
        QVERIFY(index.find(u"lighthouse"_s, 10).isEmpty());
    }
};

VELMORA_EVENTS_TEST(SearchIndexTest)
#include "SearchIndexTest.moc"
