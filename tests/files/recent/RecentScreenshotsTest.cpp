// SPDX-License-Identifier: MIT
#include "files/recent/RecentScreenshots.h"

#include "core/VelmoraSettings.h"
#include "detection/ScreenshotFolderResolver.h"
#include "filesystem/FileUrls.h"
#include "tests/files/TestFiles.h"
#include "tests/world/SlowDisk.h"
#include "tests/world/TestProgram.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <semaphore>

using namespace std::chrono_literals;

namespace
{

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

/// As another program reads it: this program's own settings know a value before it is on disk.
QStringList stored()
{
    if (!VelmoraSettings::open().waitUntilStored(10s))
        return {s("not stored")};
    const QTemporaryDir copy;
    const QString path = copy.filePath(s("copy.conf"));
    QFile::copy(VelmoraSettings::open().fileName(), path);
    return QSettings(path, QSettings::IniFormat).value(s("recentScreenshots")).toStringList();
}

/// A listing that does not end until the test lets it.
struct StuckListing {
    std::binary_semaphore begun{0};
    std::binary_semaphore mayEnd{0};

    QList<QUrl> list(const QList<QUrl> &files)
    {
        begun.release();
        mayEnd.acquire();
        return files;
    }
};

QStringList pathsOf(const QList<QUrl> &urls)
{
    QStringList paths;
    for (const QUrl &url : urls)
        paths << url.toLocalFile();
    return paths;
}

} // namespace

class RecentScreenshotsTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestFiles> m_elsewhere;
    QUrl m_folder;
    std::unique_ptr<RecentScreenshots> m_recent;

    ScreenshotFolderAccess access() const
    {
        return {[this] { return m_folder; }, ScreenshotFolderResolver::readableScreenshotFiles,
                ScreenshotFolderResolver::modificationDate};
    }

    /// A file that was last modified this many minutes ago.
    static QUrl make(const TestFiles &files, const QString &name, int minutes)
    {
        const QUrl url = files.make(name);
        QFile file(url.toLocalFile());
        if (!file.open(QFile::ReadWrite) ||
            !file.setFileTime(QDateTime::currentDateTime().addSecs(-60LL * minutes),
                              QFileDevice::FileModificationTime))
            qFatal("can't set the time of %s", qUtf8Printable(name));
        return url;
    }
    QUrl make(const QString &name, int minutes) const { return make(*m_files, name, minutes); }

    /// Waits until the list has been refreshed.
    void settle() const
    {
        QSignalSpy refreshed(m_recent.get(), &RecentScreenshots::refreshed);
        m_recent->refresh();
        QTRY_VERIFY(!refreshed.isEmpty());
        // That listing may have begun before the last change.
        refreshed.clear();
        m_recent->refresh();
        QTRY_VERIFY(!refreshed.isEmpty());
    }
    QStringList names() const
    {
        QStringList names;
        for (const QUrl &url : m_recent->urls())
            names << FileUrls::lastPathComponent(url);
        return names;
    }

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<TestFiles>();
        m_elsewhere = std::make_unique<TestFiles>();
        m_folder = m_files->folder();
        VelmoraSettings::open().clear();
        m_recent = std::make_unique<RecentScreenshots>(access());
    }

    void withoutAStoredListItIsEmpty()
    {
        m_recent->load();
        QCOMPARE(m_recent->urls(), QList<QUrl>());
    }

    void theStoredFilesThatExistAreLoadedInTheirOrder()
    {
        const QStringList paths = {make(s("b.png"), 5).toLocalFile(),
                                   m_files->url(s("gone.png")).toLocalFile(),
                                   make(s("a.png"), 1).toLocalFile(), s("relative.png"), QString()};
        VelmoraSettings::setRecentScreenshots(paths);
        m_recent->load();
        QTRY_COMPARE(pathsOf(m_recent->urls()), (QStringList{paths.at(0), paths.at(2)}));
    }

    void storedPathsAreStandardised()
    {
        const QUrl file = make(s("a.png"), 1);
        VelmoraSettings::setRecentScreenshots({m_files->folder().toLocalFile() + s("/./a.png")});
        m_recent->load();
        QCOMPARE(m_recent->urls(), QList<QUrl>{file});
    }

    void atMostTenAreLoaded()
    {
        QStringList paths = {m_files->url(s("gone.png")).toLocalFile()};
        for (int i = 0; i < 12; ++i)
            paths << make(s("%1.png").arg(i), i).toLocalFile();
        VelmoraSettings::setRecentScreenshots(paths);
        m_recent->load();
        QVERIFY(m_recent->urls().size() <= 10);
        QTRY_COMPARE(pathsOf(m_recent->urls()), paths.mid(1, 10));
    }

    void anAddedFileIsFirstAtOnceAndStoredSoon()
    {
        const QUrl old = make(s("old.png"), 9);
        const QUrl added = make(s("new.png"), 1);
        m_recent->add(old);
        m_recent->add(added);
        QCOMPARE(m_recent->urls(), (QList<QUrl>{added, old}));
        QTRY_COMPARE(stored(), pathsOf({added, old}));
    }

    void aFileAddedTwiceStandsThereOnce()
    {
        const QUrl file = make(s("a.png"), 1);
        m_recent->add(file);
        m_recent->add(QUrl::fromLocalFile(file.toLocalFile().replace(s("/a.png"), s("//a.png"))));
        QCOMPARE(m_recent->urls(), QList<QUrl>{file});
        settle();
        QCOMPARE(m_recent->urls(), QList<QUrl>{file});
    }

    void addingDropsWhatIsGone()
    {
        const QUrl gone = make(s("gone.png"), 1);
        m_recent->add(gone);
        QVERIFY(QFile::remove(gone.toLocalFile()));
        const QUrl file = make(s("a.png"), 2);
        m_recent->add(file);
        QTRY_COMPARE(m_recent->urls(), QList<QUrl>{file});
        QTRY_COMPARE(stored(), pathsOf({file}));
    }

    void elevenAdditionsKeepTheTenNewest()
    {
        QStringList expected;
        for (int i = 11; i >= 1; --i) {
            m_recent->add(make(s("%1.png").arg(i), i));
            if (i <= 10)
                expected.prepend(s("%1.png").arg(i));
        }
        QCOMPARE(names(), expected);
        settle();
        QCOMPARE(names(), expected);
        m_recent.reset();
        QCOMPARE(stored().size(), 10);
    }

    void theOrderIsThatOfTheModificationDates()
    {
        const QUrl newest = make(s("newest.png"), 1);
        const QUrl oldest = make(s("oldest.png"), 9);
        const QUrl middle = make(s("middle.png"), 5);
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
            const QUrl url = m_files->make(s(name));
            QFile file(url.toLocalFile());
            QVERIFY(file.open(QFile::ReadWrite));
            QVERIFY(file.setFileTime(date, QFileDevice::FileModificationTime));
            m_recent->add(url);
            expected.prepend(s(name));
        }
        settle();
        QCOMPARE(names(), expected);
    }

    void theFolderFillsTheListUp()
    {
        for (int i = 1; i <= 25; ++i)
            make(s("%1.png").arg(i), i);
        make(s("newest but no picture.txt"), 0);
        settle();
        QCOMPARE(names().size(), 10);
        QCOMPARE(names().first(), s("1.png"));
        QCOMPARE(names().last(), s("10.png"));
    }

    void aFileOfAnotherFolderDoesNotStay()
    {
        const QUrl here = make(s("here.png"), 1);
        m_recent->add(make(*m_elsewhere, s("elsewhere.png"), 0));
        QVERIFY(!names().contains(s("elsewhere.png")));
        settle();
        QCOMPARE(m_recent->urls(), QList<QUrl>{here});
    }

    void aFileInAFolderBelowDoesNotStay()
    {
        QVERIFY(QDir(m_folder.toLocalFile()).mkdir(s("below")));
        m_recent->add(make(s("below/a.png"), 1));
        settle();
        QCOMPARE(names(), QStringList());
    }

    void anotherFolderBringsItsOwnFiles()
    {
        m_recent->add(make(s("here.png"), 1));
        const QUrl elsewhere = make(*m_elsewhere, s("elsewhere.png"), 5);
        settle();
        m_folder = m_elsewhere->folder();
        settle();
        QCOMPARE(m_recent->folder(), m_folder);
        QCOMPARE(m_recent->urls(), QList<QUrl>{elsewhere});
        QTRY_COMPARE(stored(), pathsOf({elsewhere}));
    }

    void aFolderThatIsNotStandardisedIsTheSameFolder()
    {
        m_folder = QUrl::fromLocalFile(m_folder.toLocalFile() + s("/./"));
        m_recent->add(make(s("a.png"), 1));
        settle();
        QCOMPARE(names(), QStringList{s("a.png")});
    }

    void aFolderThatCantBeReadOffersNothingAndChangesNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << s("no such folder");
        QTest::newRow("a file") << s("a.png");
        QTest::newRow("a link to itself") << s("loop");
    }

    void aFolderThatCantBeReadOffersNothingAndChangesNothing()
    {
        QFETCH(QString, name);
        const QUrl folder = m_folder;
        const QUrl file = make(s("a.png"), 1);
        QVERIFY(QFile::link(s("loop"), m_files->url(s("loop")).toLocalFile()));
        m_recent->add(file);
        settle();
        m_folder = m_files->url(name);
        settle();
        QCOMPARE(names(), QStringList());
        QCOMPARE(stored(), pathsOf({file}));
        // Not even if another one arrives in the meantime.
        const QUrl next = make(s("b.png"), 0);
        m_recent->add(next);
        settle();
        QCOMPARE(stored(), pathsOf({next, file}));
        m_folder = folder;
        settle();
        QCOMPARE(m_recent->urls(), (QList<QUrl>{next, file}));
    }

    void aFolderThatIsReadInPartChangesNothing()
    {
        const QUrl file = make(s("a.png"), 1);
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
        m_recent->add(make(s("here.png"), 1));
        settle();
        QVERIFY(m_recent->isListed());
        make(*m_elsewhere, s("elsewhere.png"), 5);
        m_folder = m_elsewhere->folder();
        QSignalSpy refreshed(m_recent.get(), &RecentScreenshots::refreshed);
        m_recent->refresh();
        QCOMPARE(m_recent->folder(), m_folder);
        QCOMPARE(names(), QStringList());
        QVERIFY(!m_recent->isListed());
        QTRY_VERIFY(!refreshed.isEmpty());
        QVERIFY(m_recent->isListed());
        QCOMPARE(names(), QStringList{s("elsewhere.png")});
    }

    void aListingThatNeverEndsHoldsUpNeitherSavingNorTheEnd()
    {
        const auto stuck = std::make_shared<StuckListing>();
        ScreenshotFolderAccess dead = access();
        dead.newestFiles = [stuck](const QUrl &, int) { return stuck->list({}); };
        m_recent = std::make_unique<RecentScreenshots>(dead);
        m_recent->refresh();
        stuck->begun.acquire();
        const QUrl first = make(s("first.png"), 2);
        const QUrl second = make(s("second.png"), 1);
        m_recent->add(first);
        QCOMPARE(stored(), pathsOf({first}));
        m_recent->add(second);
        QCOMPARE(m_recent->urls(), (QList<QUrl>{second, first}));
        QCOMPARE(stored(), pathsOf({second, first}));
        QElapsedTimer timer;
        timer.start();
        m_recent.reset();
        QVERIFY2(timer.elapsed() < 1000, QByteArray::number(timer.elapsed()).constData());
        stuck->mayEnd.release();
        QTRY_COMPARE(stuck.use_count(), 2L); // this one and the one in `dead`
        QCOMPARE(stored(), pathsOf({second, first}));
    }

    void anotherFolderDoesNotWaitForOneThatIsStuck()
    {
        const auto stuck = std::make_shared<StuckListing>();
        const QUrl deadFolder = m_folder;
        const QUrl late = make(s("late.png"), 1);
        ScreenshotFolderAccess half = access();
        half.newestFiles = [stuck, deadFolder, late](const QUrl &folder, int limit) {
            return folder == deadFolder
                       ? stuck->list({late})
                       : ScreenshotFolderResolver::recentScreenshotFiles(folder, limit);
        };
        m_recent = std::make_unique<RecentScreenshots>(half);
        m_recent->refresh();
        stuck->begun.acquire();
        make(*m_elsewhere, s("elsewhere.png"), 5);
        m_folder = m_elsewhere->folder();
        m_recent->refresh();
        QTRY_COMPARE(names(), QStringList{s("elsewhere.png")});
        stuck->mayEnd.release();
        QTRY_COMPARE(stuck.use_count(), 3L);
        settle();
        QCOMPARE(names(), QStringList{s("elsewhere.png")});
    }

    void theMainThreadAsksNoDiskForAnything()
    {
        VelmoraSettings::setRecentScreenshots({make(s("a.png"), 1).toLocalFile()});
        const QUrl added = make(s("b.png"), 0);
        SlowDisk::startCounting();
        m_recent->load();
        m_recent->add(added);
        QTRY_VERIFY(m_recent->isListed());
        m_recent->remove(added);
        m_recent->refresh();
        QTRY_COMPARE(names().size(), 2);
        m_recent.reset();
        QCOMPARE(SlowDisk::mainThreadCalls(), QByteArrayList());
    }

    void whatIsStoredIsNotForgottenWhileTheSettingsAreSlow()
    {
        const QUrl known = make(s("known.png"), 5);
        make(s("added.png"), 1);
        VelmoraSettings::setRecentScreenshots(pathsOf({known}));
        QCOMPARE(stored(), pathsOf({known}));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QString configuration = qEnvironmentVariable("XDG_CONFIG_HOME");
        environment.insert(s("SLOW_DISK_FOLDERS"), configuration);
        environment.insert(s("SLOW_DISK_MILLISECONDS"), s("200"));
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(RECENT_LIST_WRITER),
                      {m_folder.toLocalFile(), s("--once"), s("added.png")});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 0);
        QTRY_COMPARE(stored(), pathsOf({m_files->url(s("added.png")), known}));
    }

    void aRemovedFileThatIsGoneStaysAway()
    {
        const QUrl kept = make(s("kept.png"), 2);
        const QUrl gone = make(s("gone.png"), 1);
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

    void whatIsAddedWhileTheFolderIsListedIsNotLost()
    {
        std::binary_semaphore started(0);
        std::binary_semaphore mayEnd(0);
        ScreenshotFolderAccess slow = access();
        slow.newestFiles = [&](const QUrl &, int) {
            started.release();
            mayEnd.acquire();
            return QList<QUrl>();
        };
        m_recent = std::make_unique<RecentScreenshots>(slow);
        QSignalSpy refreshed(m_recent.get(), &RecentScreenshots::refreshed);
        m_recent->refresh();
        started.acquire();
        const QUrl first = make(s("first.png"), 2);
        const QUrl second = make(s("second.png"), 1);
        m_recent->add(first);
        m_recent->add(second);
        mayEnd.release();
        QTRY_COMPARE(refreshed.size(), 1);
        QCOMPARE(m_recent->urls(), (QList<QUrl>{second, first}));
        started.acquire();
        mayEnd.release();
        QTRY_COMPARE(refreshed.size(), 2);
        QCOMPARE(m_recent->urls(), (QList<QUrl>{second, first}));
    }

    void theListIsStoredWhenItEnds()
    {
        const QUrl file = make(s("a.png"), 1);
        m_recent->add(file);
        m_recent.reset();
        QCOMPARE(stored(), pathsOf({file}));
    }

    void namesOfAllKindsAreStored()
    {
        QStringList paths;
        for (const char *name : {"a, b; \"c\".png", "@at.png", "%41 é 日本.png", "back\\slash.png"})
            paths << make(s(name), 1).toLocalFile();
        for (const QString &path : paths)
            m_recent->add(QUrl::fromLocalFile(path));
        const QStringList expected = pathsOf(m_recent->urls());
        m_recent.reset();
        QCOMPARE(stored(), expected);
        m_recent = std::make_unique<RecentScreenshots>(access());
        m_recent->load();
        QCOMPARE(pathsOf(m_recent->urls()), expected);
        VelmoraSettings::setRecentScreenshots({paths.first()});
        m_recent->load();
        QTRY_COMPARE(pathsOf(m_recent->urls()), QStringList{paths.first()});
    }

    void anUnchangedListIsNotWrittenAgain()
    {
        m_recent->add(make(s("a.png"), 1));
        settle();
        QCOMPARE(stored().size(), 1);
        const QString path = VelmoraSettings::open().fileName();
        const QDateTime long_ago = QDateTime::currentDateTime().addYears(-1);
        {
            QFile file(path);
            QVERIFY(file.open(QFile::ReadWrite));
            QVERIFY(file.setFileTime(long_ago, QFileDevice::FileModificationTime));
        }
        m_recent = std::make_unique<RecentScreenshots>(access());
        m_recent->load();
        settle();
        QCOMPARE(stored().size(), 1);
        QCOMPARE(QFileInfo(path).lastModified(), long_ago);
    }
};

VELMORA_EVENTS_TEST(RecentScreenshotsTest)
#include "RecentScreenshotsTest.moc"
