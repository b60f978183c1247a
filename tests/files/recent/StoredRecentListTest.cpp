// SPDX-License-Identifier: MIT
#include "tests/files/recent/RecentScreenshotsFixture.h"
#include "tests/world/SlowDisk.h"
#include "tests/world/TestProgram.h"

#include <QElapsedTimer>
#include <QProcess>

#include <semaphore>

using namespace Qt::StringLiterals;

namespace
{

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

} // namespace

/// How the list is loaded and stored, also when the disk does not answer.
class StoredRecentListTest : public QObject, RecentScreenshotsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void withoutAStoredListItIsEmpty()
    {
        m_recent->load();
        QCOMPARE(m_recent->urls(), QList<QUrl>());
    }

    void theStoredFilesThatExistAreLoadedInTheirOrder()
    {
        const QStringList paths = {make(u"b.png"_s, 5).toLocalFile(),
                                   m_files->url(u"gone.png"_s).toLocalFile(),
                                   make(u"a.png"_s, 1).toLocalFile(), u"relative.png"_s, QString()};
        VelmoraSettings::setRecentScreenshots(paths);
        m_recent->load();
        QTRY_COMPARE(pathsOf(m_recent->urls()), (QStringList{paths.at(0), paths.at(2)}));
    }

    void storedPathsAreStandardised()
    {
        const QUrl file = make(u"a.png"_s, 1);
        VelmoraSettings::setRecentScreenshots({m_files->folder().toLocalFile() + u"/./a.png"_s});
        m_recent->load();
        QCOMPARE(m_recent->urls(), QList<QUrl>{file});
    }

    void atMostTenAreLoaded()
    {
        QStringList paths = {m_files->url(u"gone.png"_s).toLocalFile()};
        for (int i = 0; i < 12; ++i)
            paths << make(u"%1.png"_s.arg(i), i).toLocalFile();
        VelmoraSettings::setRecentScreenshots(paths);
        m_recent->load();
        QVERIFY(m_recent->urls().size() <= 10);
        QTRY_COMPARE(pathsOf(m_recent->urls()), paths.mid(1, 10));
    }

    void aListingThatNeverEndsHoldsUpNeitherSavingNorTheEnd()
    {
        const auto stuck = std::make_shared<StuckListing>();
        ScreenshotFolderAccess dead = access();
        dead.newestFiles = [stuck](const QUrl &, int) { return stuck->list({}); };
        m_recent = std::make_unique<RecentScreenshots>(dead);
        m_recent->refresh();
        stuck->begun.acquire();
        const QUrl first = make(u"first.png"_s, 2);
        const QUrl second = make(u"second.png"_s, 1);
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
        const QUrl late = make(u"late.png"_s, 1);
        ScreenshotFolderAccess half = access();
        half.newestFiles = [stuck, deadFolder, late](const QUrl &folder, int limit) {
            return folder == deadFolder
                       ? stuck->list({late})
                       : ScreenshotFolderResolver::recentScreenshotFiles(folder, limit);
        };
        m_recent = std::make_unique<RecentScreenshots>(half);
        m_recent->refresh();
        stuck->begun.acquire();
        make(*m_elsewhere, u"elsewhere.png"_s, 5);
        m_folder = m_elsewhere->folder();
        m_recent->refresh();
        QTRY_COMPARE(names(), QStringList{u"elsewhere.png"_s});
        stuck->mayEnd.release();
        QTRY_COMPARE(stuck.use_count(), 3L);
        settle();
        QCOMPARE(names(), QStringList{u"elsewhere.png"_s});
    }

    void theMainThreadAsksNoDiskForAnything()
    {
        VelmoraSettings::setRecentScreenshots({make(u"a.png"_s, 1).toLocalFile()});
        const QUrl added = make(u"b.png"_s, 0);
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
        const QUrl known = make(u"known.png"_s, 5);
        make(u"added.png"_s, 1);
        VelmoraSettings::setRecentScreenshots(pathsOf({known}));
        QCOMPARE(stored(), pathsOf({known}));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QString configuration = qEnvironmentVariable("XDG_CONFIG_HOME");
        environment.insert(u"SLOW_DISK_FOLDERS"_s, configuration);
        environment.insert(u"SLOW_DISK_MILLISECONDS"_s, u"100"_s);
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(RECENT_LIST_WRITER),
                      {m_folder.toLocalFile(), u"--once"_s, u"added.png"_s});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 0);
        QTRY_COMPARE(stored(), pathsOf({m_files->url(u"added.png"_s), known}));
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
        const QUrl first = make(u"first.png"_s, 2);
        const QUrl second = make(u"second.png"_s, 1);
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
        const QUrl file = make(u"a.png"_s, 1);
        m_recent->add(file);
        m_recent.reset();
        QCOMPARE(stored(), pathsOf({file}));
    }

    void namesOfAllKindsAreStored()
    {
        QStringList paths;
        for (const char *name : {"a, b; \"c\".png", "@at.png", "%41 é 日本.png", "back\\slash.png"})
            paths << make(QString::fromUtf8(name), 1).toLocalFile();
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
        m_recent->add(make(u"a.png"_s, 1));
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

VELMORA_EVENTS_TEST(StoredRecentListTest)
#include "StoredRecentListTest.moc"
