// SPDX-License-Identifier: MIT
#include "tests/files/recent/RecentScreenshotsFixture.h"
#include "tests/world/TestProgram.h"

#include <QDir>

using namespace Qt::StringLiterals;

/// Which files are on the list, and in which order.
class RecentScreenshotsTest : public QObject, RecentScreenshotsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void anAddedFileIsFirstAtOnceAndStoredSoon()
    {
        const QUrl old = make(u"old.png"_s, 9);
        const QUrl added = make(u"new.png"_s, 1);
        m_recent->add(old);
        m_recent->add(added);
        QCOMPARE(m_recent->urls(), (QList<QUrl>{added, old}));
        QTRY_COMPARE(stored(), pathsOf({added, old}));
    }

    void aFileAddedTwiceStandsThereOnce()
    {
        const QUrl file = make(u"a.png"_s, 1);
        m_recent->add(file);
        m_recent->add(QUrl::fromLocalFile(file.toLocalFile().replace(u"/a.png"_s, u"//a.png"_s)));
        QCOMPARE(m_recent->urls(), QList<QUrl>{file});
        settle();
        QCOMPARE(m_recent->urls(), QList<QUrl>{file});
    }

    void addingDropsWhatIsGone()
    {
        const QUrl gone = make(u"gone.png"_s, 1);
        m_recent->add(gone);
        QVERIFY(QFile::remove(gone.toLocalFile()));
        const QUrl file = make(u"a.png"_s, 2);
        m_recent->add(file);
        QTRY_COMPARE(m_recent->urls(), QList<QUrl>{file});
        QTRY_COMPARE(stored(), pathsOf({file}));
    }

    void elevenAdditionsKeepTheTenNewest()
    {
        QStringList expected;
        for (int i = 11; i >= 1; --i) {
            m_recent->add(make(u"%1.png"_s.arg(i), i));
            if (i <= 10)
                expected.prepend(u"%1.png"_s.arg(i));
        }
        QCOMPARE(names(), expected);
        settle();
        QCOMPARE(names(), expected);
        m_recent.reset();
        QCOMPARE(stored().size(), 10);
    }

    void theOrderIsThatOfTheModificationDates()
    {
        const QUrl newest = make(u"newest.png"_s, 1);
        const QUrl oldest = make(u"oldest.png"_s, 9);
        const QUrl middle = make(u"middle.png"_s, 5);
        m_recent->add(newest);
        m_recent->add(middle);
        m_recent->add(oldest);
        settle();
        QCOMPARE(m_recent->urls(), (QList<QUrl>{newest, middle, oldest}));
        QTRY_COMPARE(stored(), pathsOf({newest, middle, oldest}));
    }

    void filesOfOneDateKeepTheirOrder()
    {
        const QDateTime date = QDateTime::currentDateTime().addSecs(-100);
        QStringList expected;
        for (const char *name : {"c.png", "a.png", "d.png", "b.png"}) {
            const QUrl url = m_files->make(QString::fromUtf8(name));
            QFile file(url.toLocalFile());
            QVERIFY(file.open(QFile::ReadWrite));
            QVERIFY(file.setFileTime(date, QFileDevice::FileModificationTime));
            m_recent->add(url);
            expected.prepend(QString::fromUtf8(name));
        }
        settle();
        QCOMPARE(names(), expected);
    }

    void theFolderFillsTheListUp()
    {
        for (int i = 1; i <= 25; ++i)
            make(u"%1.png"_s.arg(i), i);
        make(u"newest but no picture.txt"_s, 0);
        settle();
        QCOMPARE(names().size(), 10);
        QCOMPARE(names().first(), u"1.png"_s);
        QCOMPARE(names().last(), u"10.png"_s);
    }

    void aFileOfAnotherFolderDoesNotStay()
    {
        const QUrl here = make(u"here.png"_s, 1);
        m_recent->add(make(*m_elsewhere, u"elsewhere.png"_s, 0));
        QVERIFY(!names().contains(u"elsewhere.png"_s));
        settle();
        QCOMPARE(m_recent->urls(), QList<QUrl>{here});
    }

    void aFileInAFolderBelowDoesNotStay()
    {
        QVERIFY(QDir(m_folder.toLocalFile()).mkdir(u"below"_s));
        m_recent->add(make(u"below/a.png"_s, 1));
        settle();
        QCOMPARE(names(), QStringList());
    }

    void anotherFolderBringsItsOwnFiles()
    {
        m_recent->add(make(u"here.png"_s, 1));
        const QUrl elsewhere = make(*m_elsewhere, u"elsewhere.png"_s, 5);
        settle();
        m_folder = m_elsewhere->folder();
        settle();
        QCOMPARE(m_recent->folder(), m_folder);
        QCOMPARE(m_recent->urls(), QList<QUrl>{elsewhere});
        QTRY_COMPARE(stored(), pathsOf({elsewhere}));
    }

    void aFolderThatIsNotStandardisedIsTheSameFolder()
    {
        m_folder = QUrl::fromLocalFile(m_folder.toLocalFile() + u"/./"_s);
        m_recent->add(make(u"a.png"_s, 1));
        settle();
        QCOMPARE(names(), QStringList{u"a.png"_s});
    }

    void aFolderThatCantBeReadOffersNothingAndChangesNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << u"no such folder"_s;
        QTest::newRow("a file") << u"a.png"_s;
        QTest::newRow("a link to itself") << u"loop"_s;
    }

    void aFolderThatCantBeReadOffersNothingAndChangesNothing()
    {
        QFETCH(QString, name);
        const QUrl folder = m_folder;
        const QUrl file = make(u"a.png"_s, 1);
        QVERIFY(QFile::link(u"loop"_s, m_files->url(u"loop"_s).toLocalFile()));
        m_recent->add(file);
        settle();
        m_folder = m_files->url(name);
        settle();
        QCOMPARE(names(), QStringList());
        QCOMPARE(stored(), pathsOf({file}));
        // Not even if another one arrives in the meantime.
        const QUrl next = make(u"b.png"_s, 0);
        m_recent->add(next);
        settle();
        QCOMPARE(stored(), pathsOf({next, file}));
        m_folder = folder;
        settle();
        QCOMPARE(m_recent->urls(), (QList<QUrl>{next, file}));
    }

    void aFolderThatIsReadInPartChangesNothing()
    {
        const QUrl file = make(u"a.png"_s, 1);
        m_recent->add(file);
        settle();
        ScreenshotFolderAccess broken = access();
        broken.newestFiles = [](const QUrl &, int) { return std::nullopt; };
        m_recent = std::make_unique<RecentScreenshots>(broken);
        m_recent->load();
        settle();
        QVERIFY(m_recent->isListed());
        QCOMPARE(stored(), pathsOf({file}));
    }

    void theOldFoldersFilesAreNotOfferedUnderTheNewOne()
    {
        m_recent->add(make(u"here.png"_s, 1));
        settle();
        QVERIFY(m_recent->isListed());
        make(*m_elsewhere, u"elsewhere.png"_s, 5);
        m_folder = m_elsewhere->folder();
        QSignalSpy refreshed(m_recent.get(), &RecentScreenshots::refreshed);
        m_recent->refresh();
        QCOMPARE(m_recent->folder(), m_folder);
        QCOMPARE(names(), QStringList());
        QVERIFY(!m_recent->isListed());
        QTRY_VERIFY(!refreshed.isEmpty());
        QVERIFY(m_recent->isListed());
        QCOMPARE(names(), QStringList{u"elsewhere.png"_s});
    }

    void aRemovedFileThatIsGoneStaysAway()
    {
        const QUrl kept = make(u"kept.png"_s, 2);
        const QUrl gone = make(u"gone.png"_s, 1);
        m_recent->add(kept);
        m_recent->add(gone);
        QVERIFY(QFile::remove(gone.toLocalFile()));
        QSignalSpy refreshed(m_recent.get(), &RecentScreenshots::refreshed);
        m_recent->remove(gone);
        QCOMPARE(m_recent->urls(), QList<QUrl>{kept});
        QTRY_VERIFY(!refreshed.isEmpty());
        settle();
        QCOMPARE(m_recent->urls(), QList<QUrl>{kept});
    }
};

VELMORA_EVENTS_TEST(RecentScreenshotsTest)
#include "RecentScreenshotsTest.moc"
