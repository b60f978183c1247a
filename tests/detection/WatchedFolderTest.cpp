// SPDX-License-Identifier: MIT
#include "detection/ScreenshotWatcher.h"

#include "tests/detection/FolderActions.h"
#include "tests/detection/PoorFolderEvents.h"
#include "tests/detection/Watched.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using FolderActions::moveIn;
using FolderActions::write;

namespace
{

/// Events of a system that hangs until it is released.
class HangingFolderEvents : public PoorFolderEvents
{
public:
    explicit HangingFolderEvents(std::shared_ptr<QSemaphore> released)
        : PoorFolderEvents(Coverage::Some), m_released(std::move(released))
    {
    }

    Coverage arm(const QString &folder) override
    {
        m_released->acquire();
        return PoorFolderEvents::arm(folder);
    }

private:
    /// Shared, because the watcher's thread may outlive the test.
    const std::shared_ptr<QSemaphore> m_released;
};

/// Gives the process an ordinary user's rights, so that permissions apply, until destroyed.
class OrdinaryUser
{
public:
    OrdinaryUser()
    {
        constexpr uid_t nobody = 65534;
        m_changed = ::geteuid() == 0 && ::seteuid(nobody) == 0;
    }
    ~OrdinaryUser()
    {
        if (m_changed && ::seteuid(0) != 0)
            qFatal("The test can't become root again");
    }

    bool isOrdinary() const { return ::geteuid() != 0; }

private:
    bool m_changed = false;
};

} // namespace

/// What happens to the watched folder itself.
class WatchedFolderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_folder = m_directory->path() + u"/Shots"_s;
        QVERIFY(QDir().mkpath(m_folder));
    }

    void aFolderThatIsMissingAtTheStartIsWatchedWhenItComes()
    {
        QVERIFY(QDir().rmdir(m_folder));
        Watched watched(m_folder);
        watched->start();
        letAllScansPass();
        QVERIFY(QDir().mkdir(m_folder));
        QVERIFY(write(inFolder("a.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
    }

    void aFolderThatVanishesAndReturnsIsWatchedAgain()
    {
        Watched watched(m_folder);
        watched->start();
        QVERIFY(QDir(m_folder).removeRecursively());
        letAllScansPass();
        QVERIFY(QDir().mkdir(m_folder));
        QVERIFY(write(inFolder("a.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
        QVERIFY(QDir(m_folder).removeRecursively());
        QVERIFY(QDir().mkdir(m_folder));
        QVERIFY(write(inFolder("b.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png", "b.png"}));
    }

    void aFolderThatIsMovedAwayAndReplacedIsNotWatchedAtItsNewPlace()
    {
        Watched watched(m_folder);
        watched->start();
        const QString away = m_directory->path() + u"/away"_s;
        QVERIFY(QDir().rename(m_folder, away));
        QVERIFY(QDir().mkdir(m_folder));
        QVERIFY(write(away + u"/elsewhere.png"_s));
        QVERIFY(write(inFolder("here.png")));
        QTRY_COMPARE(watched.names(), fileNames({"here.png"}));
        QVERIFY(write(inFolder("here too.png")));
        QTRY_COMPARE(watched.names(), fileNames({"here.png", "here too.png"}));
    }

    void aFolderWhoseParentIsRenamedIsGoneUntilItReturns()
    {
        const QString parent = m_directory->path() + u"/parent"_s;
        const QString folder = parent + u"/inner"_s;
        QVERIFY(QDir().mkpath(folder));
        Watched watched(folder);
        watched->start();
        QVERIFY(QDir().rename(parent, parent + u"2"_s));
        letAllScansPass();
        QVERIFY(write(parent + u"2/inner/away.png"_s));
        letAllScansPass();
        QCOMPARE(watched.names(), QStringList());
        QVERIFY(QDir().rename(parent + u"2"_s, parent));
        QTRY_COMPARE(watched.names(), fileNames({"away.png"}));
        QVERIFY(write(folder + u"/back.png"_s));
        QTRY_COMPARE(watched.names(), fileNames({"away.png", "back.png"}));
    }

    void aLinkToAFolderIsFollowedWhereverItLeads()
    {
        const QString link = m_directory->path() + u"/link"_s;
        const QString other = m_directory->path() + u"/other"_s;
        QVERIFY(QDir().mkdir(other));
        QVERIFY(FolderActions::symlink(m_folder, link));
        Watched watched(link);
        watched->start();
        QVERIFY(write(inFolder("a.png")));
        QTRY_COMPARE(watched.urls(), QList<QUrl>(1, QUrl::fromLocalFile(link + u"/a.png"_s)));
        QVERIFY(QFile::remove(link));
        QVERIFY(FolderActions::symlink(other, link));
        QVERIFY(write(other + u"/b.png"_s));
        QTRY_COMPARE(watched.names(), fileNames({"a.png", "b.png"}));
        QVERIFY(write(inFolder("c.png")));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"a.png", "b.png"}));
    }

    void aFileInThePlaceOfTheFolderHoldsNothing()
    {
        QVERIFY(QDir().rmdir(m_folder));
        QVERIFY(write(m_folder));
        Watched watched(m_folder);
        watched->start();
        letAllScansPass();
        QVERIFY(QFile::remove(m_folder));
        QVERIFY(QDir().mkdir(m_folder));
        QVERIFY(write(inFolder("a.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
    }

    void aPlaceThatIsNoLocalFolderHoldsNothing()
    {
        bool called = false;
        ScreenshotWatcher watcher(
            QUrl(u"smb://server/share"_s), [&called](const QUrl &) { called = true; },
            makeFolderEvents);
        watcher.start();
        letAllScansPass();
        QVERIFY(!called);
    }

    void aFolderThatMayNotBeReadHoldsNothingUntilItMay_data()
    {
        QTest::addColumn<bool>("parentToo");
        QTest::newRow("the folder") << false;
        QTest::newRow("its parent") << true;
    }

    void aFolderThatMayNotBeReadHoldsNothingUntilItMay()
    {
        QFETCH(bool, parentToo);
        const OrdinaryUser user;
        if (!user.isOrdinary())
            QSKIP("root can't become another user here");
        const QTemporaryDir directory;
        const QString folder = directory.filePath(u"Shots"_s);
        QVERIFY(QDir().mkdir(folder));
        const QByteArray closed = QFile::encodeName(parentToo ? directory.path() : folder);
        Watched watched(folder);
        watched->start();
        QVERIFY(write(folder + u"/a.png"_s));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
        QVERIFY(::chmod(closed.constData(), 0) == 0);
        QVERIFY(!write(folder + u"/b.png"_s));
        letAllScansPass();
        QVERIFY(::chmod(closed.constData(), 0700) == 0);
        // Files that could not be seen for a while count as new.
        QTRY_COMPARE(watched.names(), fileNames({"a.png", "a.png"}));
        QVERIFY(write(folder + u"/b.png"_s));
        QTRY_COMPARE(watched.names(), fileNames({"a.png", "a.png", "b.png"}));
    }

    void aFolderIsWatchedByTicksWhereTheSystemTellsLittle_data()
    {
        QTest::addColumn<FolderEvents::Coverage>("coverage");
        QTest::newRow("nothing") << FolderEvents::Coverage::Nothing;
        QTest::newRow("some") << FolderEvents::Coverage::Some;
    }

    void aFolderIsWatchedByTicksWhereTheSystemTellsLittle()
    {
        QFETCH(FolderEvents::Coverage, coverage);
        QVERIFY(write(inFolder("before.png")));
        Watched watched(m_folder,
                        [coverage] { return std::make_unique<PoorFolderEvents>(coverage); });
        watched->start();
        QVERIFY(write(inFolder("a.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png"}));
        QVERIFY(QDir(m_folder).removeRecursively());
        letAllScansPass();
        QVERIFY(QDir().mkdir(m_folder));
        QVERIFY(write(inFolder("b.png")));
        QTRY_COMPARE(watched.names(), fileNames({"a.png", "b.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"a.png", "b.png"}));
    }

    void aSlowFolderKeepsNobodyWaitingAndStillTellsOldFromNew()
    {
        QVERIFY(write(inFolder("before.png")));
        const auto released = std::make_shared<QSemaphore>();
        Watched watched(m_folder,
                        [released] { return std::make_unique<HangingFolderEvents>(released); });
        QElapsedTimer timer;
        timer.start();
        watched->start();
        QVERIFY(timer.elapsed() < 500);
        QVERIFY(moveIn(inFolder("after.png"), FileTimes::now() - 1s));
        released->release();
        QTRY_COMPARE(watched.names(), fileNames({"after.png"}));
        letAllScansPass();
        QCOMPARE(watched.names(), fileNames({"after.png"}));
    }

    void aFolderThatNeverAnswersDoesNotHoldUpTheEnd()
    {
        const auto released = std::make_shared<QSemaphore>();
        QElapsedTimer timer;
        {
            Watched watched(m_folder,
                            [released] { return std::make_unique<HangingFolderEvents>(released); });
            watched->start();
            timer.start();
        }
        // Another folder may have been chosen, so nothing waits for the previous one.
        QVERIFY(timer.elapsed() < 500);
        released->release();
        letAllScansPass();
    }

private:
    QString inFolder(const char *name) const { return m_folder + u'/' + QString::fromUtf8(name); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_folder;
};

VELMORA_EVENTS_TEST(WatchedFolderTest)
#include "WatchedFolderTest.moc"
