// SPDX-License-Identifier: MIT
#include "tests/search/SearchIndexFixture.h"

#include "tests/world/PrivateMount.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The index on a disk that is full, read-only or gone.
class SearchDiskTest : public QObject, private SearchIndexFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

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
};

VELMORA_EVENTS_TEST(SearchDiskTest)
#include "SearchDiskTest.moc"
