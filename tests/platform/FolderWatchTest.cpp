// SPDX-License-Identifier: MIT
#include "tests/platform/FolderEventsFixture.h"
#include "tests/world/PrivateMount.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <cstdlib>

#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// Lets the process open this many more files and no others.
class DescriptorLimit
{
public:
    explicit DescriptorLimit(int more)
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        // The lowest free numbers are used first.
        int free = ::dup(0);
        rlimit limit = m_before;
        limit.rlim_cur = static_cast<rlim_t>(free + more);
        ::close(free);
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

private:
    rlimit m_before = {};
};

} // namespace

/// What can be watched, and what is reported when the folder itself comes or goes.
class FolderWatchTest : public QObject, FolderEventsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void aFolderThatIsDeletedIsGone()
    {
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(QDir().rmdir(m_folder));
        QTRY_COMPARE(m_gone->count(), 1);
        QVERIFY(QDir().mkdir(m_folder));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(write(path("new")));
        QTRY_VERIFY(m_names.contains(u"new"_s));
        QCOMPARE(m_gone->count(), 1);
    }

    void aFolderThatIsMovedAwayIsGoneAndNoLongerReported()
    {
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        const QString away = m_directory->path() + u"/away"_s;
        QVERIFY(QDir().rename(m_folder, away));
        QTRY_COMPARE(m_gone->count(), 1);
        const QStringList before = openDescriptors();
        QVERIFY(write(away + u"/late"_s));
        QCoreApplication::processEvents();
        QCOMPARE(m_names, QStringList());
    }

    void aFolderThatIsMissingIsReportedWhenItComes_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("alone") << u"missing"_s;
        QTest::newRow("with its parents") << u"one/two/missing"_s;
        QTest::newRow("behind a link") << u"link/missing"_s;
    }

    void aFolderThatIsMissingIsReportedWhenItComes()
    {
        QFETCH(QString, folder);
        QVERIFY(::symlink("three/four", raw(path("link")).constData()) == 0);
        const QString missing = m_folder + u'/' + folder;
        QCOMPARE(m_events->arm(missing), Coverage::Missing);
        QVERIFY(write(path("something else")));
        QVERIFY(Waiting::staysTrue([&] { return m_gone->isEmpty(); }, 100ms));
        QVERIFY(QDir().mkpath(path("three/four")) && QDir().mkpath(missing));
        const bool isArmed = QTest::qWaitFor(
            [&] { return m_gone->count() > 0 && m_events->arm(missing) == Coverage::All; });
        QVERIFY(isArmed);
        QVERIFY(write(missing + u"/new"_s));
        QTRY_VERIFY(m_names.contains(u"new"_s));
    }

    void aFileInThePlaceOfTheFolderIsReportedWhenItGoes()
    {
        QVERIFY(write(path("file")));
        QCOMPARE(m_events->arm(path("file")), Coverage::Missing);
        QVERIFY(QFile::remove(path("file")));
        QTRY_COMPARE(m_gone->count(), 1);
    }

    void changesOfTheFoldersParentsAreReported_data()
    {
        QTest::addColumn<QByteArray>("act");
        QTest::newRow("a parent is renamed") << QByteArray("mv real real2");
        QTest::newRow("a link leads elsewhere") << QByteArray("ln -sfn /nowhere link");
        QTest::newRow("a link is replaced") << QByteArray("ln -s real other && mv -T other link");
        QTest::newRow("a parent gets other permissions") << QByteArray("chmod 711 real");
    }

    void changesOfTheFoldersParentsAreReported()
    {
        QFETCH(QByteArray, act);
        QVERIFY(QDir().mkpath(path("real/inner/Shots")));
        QVERIFY(::symlink("real", raw(path("link")).constData()) == 0);
        QCOMPARE(m_events->arm(path("link/inner/Shots")), Coverage::All);
        QVERIFY(Waiting::staysTrue([&] { return m_gone->isEmpty(); }, 50ms));
        const QByteArray command = "cd '" + raw(m_folder) + "' && " + act;
        QCOMPARE(::system(command.constData()), 0);
        QTRY_COMPARE(m_gone->count(), 1);
    }

    void aMountOnThePathIsReported_data()
    {
        QTest::addColumn<QString>("place");
        QTest::newRow("over the folder") << u"above/Shots"_s;
        QTest::newRow("over a folder above it") << u"above"_s;
    }

    void aMountOnThePathIsReported()
    {
        QFETCH(QString, place);
        const PrivateMount disk("size=64k");
        if (!disk)
            QSKIP(PrivateMount::unavailable);
        const QString folder = disk.filePath(u"above/Shots"_s);
        const QByteArray mountPoint = raw(disk.filePath(place));
        QVERIFY(QDir().mkpath(folder));
        QCOMPARE(m_events->arm(folder), Coverage::All);
        QVERIFY(::mount("tmpfs", mountPoint.constData(), "tmpfs", 0, nullptr) == 0);
        QTRY_COMPARE(m_gone->count(), 1);
        m_events->arm(folder);
        QVERIFY(::umount2(mountPoint.constData(), MNT_DETACH) == 0);
        QTRY_COMPARE(m_gone->count(), 2);
        QVERIFY(Waiting::staysTrue([&] { return m_gone->count() == 2; }, 100ms));
    }

    void aMountElsewhereIsNotReported()
    {
        const PrivateMount elsewhere("size=64k");
        if (!elsewhere)
            QSKIP(PrivateMount::unavailable);
        const QString inner = elsewhere.filePath(u"inner"_s);
        QVERIFY(QDir().mkdir(inner));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(::mount("tmpfs", raw(inner).constData(), "tmpfs", 0, nullptr) == 0);
            QVERIFY(Waiting::staysTrue([&] { return m_gone->isEmpty(); }, 100ms));
            QVERIFY(::umount2(raw(inner).constData(), MNT_DETACH) == 0);
            QVERIFY(Waiting::staysTrue([&] { return m_gone->isEmpty(); }, 100ms));
        }
        QVERIFY(write(path("new")));
        QTRY_VERIFY(m_names.contains(u"new"_s));
    }

    void aPathThatIsNoneCantBeWatched()
    {
        const QStringList before = openDescriptors();
        QCOMPARE(m_events->arm(QString()), Coverage::Nothing);
        m_events->disarm();
        QCOMPARE(openDescriptors(), before);
    }

    void anUnknownFileSystemReportsSomeChanges()
    {
        QCOMPARE(m_events->arm(u"/proc/self"_s), Coverage::Some);
    }

    void aLinkToAFolderIsFollowed()
    {
        const QString link = m_directory->path() + u"/link"_s;
        QVERIFY(QFile::link(m_folder, link));
        QCOMPARE(m_events->arm(link), Coverage::All);
        QVERIFY(write(path("new")));
        QTRY_VERIFY(m_names.contains(u"new"_s));
    }

    void disarmedOrReleasedItHoldsNoDescriptor()
    {
        const QStringList before = openDescriptors();
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(openDescriptors() != before);
        m_events->disarm();
        QCOMPARE(openDescriptors(), before);
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        m_events.reset();
        QCOMPARE(openDescriptors(), before);
    }

    void withoutDescriptorsLittleOrNothingIsReported()
    {
        {
            const DescriptorLimit none(0);
            QCOMPARE(m_events->arm(m_folder), Coverage::Nothing);
        }
        {
            const DescriptorLimit one(1);
            QCOMPARE(m_events->arm(m_folder), Coverage::Some);
        }
        QVERIFY(write(path("new")));
        QTRY_VERIFY(m_names.contains(u"new"_s));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
    }
};

VELMORA_EVENTS_TEST(FolderWatchTest)
#include "FolderWatchTest.moc"
