// SPDX-License-Identifier: MIT
#include "tests/search/SearchIndexFixture.h"

#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// What is found, and what happens to files that are known.
class SearchIndexTest : public QObject, private SearchIndexFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

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
        constexpr int day = 24 * 60;
        const QUrl oldest = m_files->make(u"a.png"_s);
        const QUrl newest = m_files->make(u"b.png"_s);
        const QUrl named = m_files->make(u"ferry.png"_s);
        TestFiles::setAge(oldest, 3 * day);
        TestFiles::setAge(newest, 1 * day);
        TestFiles::setAge(named, 9 * day);
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
};

VELMORA_EVENTS_TEST(SearchIndexTest)
#include "SearchIndexTest.moc"
