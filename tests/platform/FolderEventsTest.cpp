// SPDX-License-Identifier: MIT
#include "platform/FolderEvents.h"

#include "tests/world/PrivateMount.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using Coverage = FolderEvents::Coverage;

using namespace std::chrono_literals;

namespace
{

QByteArray raw(const QString &path)
{
    return QFile::encodeName(path);
}

bool write(const QString &path, const QByteArray &content = "picture")
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Append) &&
           file.write(content) == content.size();
}

QStringList openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::Files);
}

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

class FolderEventsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_folder = m_directory->path() + QStringLiteral("/Shots");
        QVERIFY(QDir().mkdir(m_folder));
        m_events = makeFolderEvents();
        m_names.clear();
        m_listAgain = std::make_unique<QSignalSpy>(m_events.get(), &FolderEvents::listAgain);
        m_gone = std::make_unique<QSignalSpy>(m_events.get(), &FolderEvents::folderGone);
        connect(m_events.get(), &FolderEvents::entriesChanged, this,
                [this](const QStringList &names) { m_names += names; });
    }

    void cleanup() { m_events.reset(); }

    void whateverHappensToAnEntryIsTold()
    {
        const QString aside = m_directory->path() + QStringLiteral("/aside");
        QVERIFY(write(path("old")));
        QVERIFY(write(aside));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        const auto isTold = [this](const char *name) {
            const bool told =
                QTest::qWaitFor([this, name] { return m_names.contains(QLatin1String(name)); });
            // Anything else that the same action causes arrives before the next one.
            QCoreApplication::processEvents();
            m_names.clear();
            return told;
        };
        QVERIFY(write(path("new")));
        QVERIFY(isTold("new"));
        QVERIFY(write(path("old")));
        QVERIFY(isTold("old"));
        QVERIFY(::utimensat(AT_FDCWD, raw(path("old")).constData(), nullptr, 0) == 0);
        QVERIFY(isTold("old"));
        QVERIFY(::link(raw(path("old")).constData(), raw(path("linked")).constData()) == 0);
        QVERIFY(isTold("linked"));
        QVERIFY(::rename(raw(path("old")).constData(), raw(path("renamed")).constData()) == 0);
        QTRY_VERIFY(m_names.contains(QStringLiteral("old")));
        QVERIFY(isTold("renamed"));
        QVERIFY(::rename(raw(path("renamed")).constData(), raw(aside).constData()) == 0);
        QVERIFY(isTold("renamed"));
        QVERIFY(::rename(raw(aside).constData(), raw(path("returned")).constData()) == 0);
        QVERIFY(isTold("returned"));
        QVERIFY(QFile::remove(path("returned")));
        QVERIFY(isTold("returned"));
        QVERIFY(QDir().mkdir(path("folder")));
        QVERIFY(isTold("folder"));
        QVERIFY(QDir().rmdir(path("folder")));
        QVERIFY(isTold("folder"));
        QVERIFY(::symlink("nowhere", raw(path("link")).constData()) == 0);
        QVERIFY(isTold("link"));
        QCOMPARE(m_listAgain->count(), 0);
        QCOMPARE(m_gone->count(), 0);
    }

    void aFileThatGetsItsNameWhenItIsCompleteIsTold()
    {
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        const int unnamed =
            ::open(raw(m_folder).constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
        QVERIFY(unnamed >= 0);
        QCOMPARE(::write(unnamed, "picture", 7), ssize_t(7));
        const QByteArray link = "/proc/self/fd/" + QByteArray::number(unnamed);
        QVERIFY(::linkat(AT_FDCWD, link.constData(), AT_FDCWD, raw(path("shot.png")).constData(),
                         AT_SYMLINK_FOLLOW) == 0);
        ::close(unnamed);
        QTRY_COMPARE(m_names, QStringList(QStringLiteral("shot.png")));
    }

    void onlyTheFolderItselfIsTold()
    {
        QVERIFY(QDir().mkdir(path("sub")));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(write(path("sub/inside")));
        QVERIFY(write(m_directory->path() + QStringLiteral("/outside")));
        QVERIFY(write(path("last")));
        QTRY_VERIFY(m_names.contains(QStringLiteral("last")));
        QVERIFY(!m_names.contains(QStringLiteral("inside")));
        QVERIFY(!m_names.contains(QStringLiteral("outside")));
    }

    void aChangeOfTheFoldersOwnAttributesAsksForAListing()
    {
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(::chmod(raw(m_folder).constData(), 0755) == 0);
        QTRY_COMPARE(m_listAgain->count(), 1);
        QCOMPARE(m_names, QStringList());
    }

    void aNameThatIsNotUtf8AsksForAListing()
    {
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        const QByteArray name = raw(m_folder) + "/\xff";
        const int file = ::open(name.constData(), O_CREAT | O_CLOEXEC, 0600);
        QVERIFY(file >= 0);
        ::close(file);
        QTRY_VERIFY(m_listAgain->count() > 0);
        QCOMPARE(m_names, QStringList());
    }

    void lostEventsAskForAListing()
    {
        QFile limit(QStringLiteral("/proc/sys/fs/inotify/max_queued_events"));
        QVERIFY(limit.open(QIODevice::ReadOnly));
        const int queued = limit.readAll().trimmed().toInt();
        QVERIFY(queued > 0);
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        // With only one of the two names, consecutive events would be merged into one.
        const QByteArray one = raw(path("one"));
        const QByteArray two = raw(path("two"));
        for (int i = 0; i <= queued / 2; ++i) {
            QVERIFY(::mknod(one.constData(), S_IFREG | 0600, 0) == 0);
            QVERIFY(::rename(one.constData(), two.constData()) == 0);
        }
        QCOMPARE(m_listAgain->count(), 0);
        QTRY_COMPARE(m_listAgain->count(), 1);
        m_names.clear();
        QVERIFY(write(path("later")));
        QTRY_VERIFY(m_names.contains(QStringLiteral("later")));
    }

    void aStormOfWritesIsToldSeldom()
    {
        QVERIFY(write(path("large")));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QSignalSpy told(m_events.get(), &FolderEvents::entriesChanged);
        QFile file(path("large"));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QElapsedTimer timer;
        timer.start();
        qsizetype writes = 0;
        while (timer.elapsed() < 500) {
            QVERIFY(file.write("x") == 1);
            QCoreApplication::processEvents();
            ++writes;
        }
        QVERIFY2(writes > 1000, qPrintable(QString::number(writes)));
        QVERIFY(told.count() > 1);
        QVERIFY2(told.count() <= 30, qPrintable(QString::number(told.count())));
        told.clear();
        file.close();
        QTRY_COMPARE(told.count(), 1);
    }

    void aStormOfWritesDoesNotHoldUpANewFile()
    {
        QVERIFY(write(path("large")));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(write(path("large")));
        QTRY_VERIFY(m_names.contains(QStringLiteral("large")));
        // The pause after that has only just begun.
        QVERIFY(write(path("large")));
        QVERIFY(write(path("new")));
        QCoreApplication::processEvents();
        QVERIFY(m_names.contains(QStringLiteral("new")));
    }

    void aFolderThatIsDeletedIsGone()
    {
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(QDir().rmdir(m_folder));
        QTRY_COMPARE(m_gone->count(), 1);
        QVERIFY(QDir().mkdir(m_folder));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(write(path("new")));
        QTRY_VERIFY(m_names.contains(QStringLiteral("new")));
        QCOMPARE(m_gone->count(), 1);
    }

    void aFolderThatIsMovedAwayIsGoneAndNoLongerTold()
    {
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        const QString away = m_directory->path() + QStringLiteral("/away");
        QVERIFY(QDir().rename(m_folder, away));
        QTRY_COMPARE(m_gone->count(), 1);
        const QStringList before = openDescriptors();
        QVERIFY(write(away + QStringLiteral("/late")));
        QCoreApplication::processEvents();
        QCOMPARE(m_names, QStringList());
    }

    void aFolderThatIsMissingIsToldWhenItComes_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("alone") << QStringLiteral("missing");
        QTest::newRow("with its parents") << QStringLiteral("one/two/missing");
        QTest::newRow("behind a link") << QStringLiteral("link/missing");
    }

    void aFolderThatIsMissingIsToldWhenItComes()
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
        QVERIFY(write(missing + QStringLiteral("/new")));
        QTRY_VERIFY(m_names.contains(QStringLiteral("new")));
    }

    void aFileInThePlaceOfTheFolderIsToldWhenItGoes()
    {
        QVERIFY(write(path("file")));
        QCOMPARE(m_events->arm(path("file")), Coverage::Missing);
        QVERIFY(QFile::remove(path("file")));
        QTRY_COMPARE(m_gone->count(), 1);
    }

    void whatHappensOnTheWayToTheFolderIsTold_data()
    {
        QTest::addColumn<QByteArray>("act");
        QTest::newRow("a parent is renamed") << QByteArray("mv real real2");
        QTest::newRow("a link leads elsewhere") << QByteArray("ln -sfn /nowhere link");
        QTest::newRow("a link is replaced") << QByteArray("ln -s real other && mv -T other link");
        QTest::newRow("a parent gets other permissions") << QByteArray("chmod 711 real");
    }

    void whatHappensOnTheWayToTheFolderIsTold()
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

    void whatIsMountedOverTheFolderIsTold()
    {
        QVERIFY(write(path("beneath")));
        const PrivateMount place("size=64k");
        if (!place)
            QSKIP(PrivateMount::unavailable);
        const QString folder = place.filePath(QStringLiteral("inner"));
        QVERIFY(QDir().mkdir(folder));
        QCOMPARE(m_events->arm(folder), Coverage::All);
        QVERIFY(Waiting::settles([&] { return m_gone->count(); }, 50ms));
        const qsizetype before = m_gone->count();
        QVERIFY(::mount("tmpfs", raw(folder).constData(), "tmpfs", 0, nullptr) == 0);
        QTRY_COMPARE(m_gone->count(), before + 1);
        QVERIFY(::umount2(raw(folder).constData(), MNT_DETACH) == 0);
    }

    void aPathThatIsNoneCantBeWatched()
    {
        const QStringList before = openDescriptors();
        QCOMPARE(m_events->arm(QString()), Coverage::Nothing);
        m_events->disarm();
        QCOMPARE(openDescriptors(), before);
    }

    void aFileSystemThatWeDoNotKnowTellsSome()
    {
        QCOMPARE(m_events->arm(QStringLiteral("/proc/self")), Coverage::Some);
    }

    void aLinkToAFolderIsFollowed()
    {
        const QString link = m_directory->path() + QStringLiteral("/link");
        QVERIFY(QFile::link(m_folder, link));
        QCOMPARE(m_events->arm(link), Coverage::All);
        QVERIFY(write(path("new")));
        QTRY_VERIFY(m_names.contains(QStringLiteral("new")));
    }

    void armingAnewEndsTheOldWatch()
    {
        const QString other = m_directory->path() + QStringLiteral("/other");
        QVERIFY(QDir().mkdir(other));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(write(path("queued")));
        QCOMPARE(m_events->arm(other), Coverage::All);
        QVERIFY(write(path("old")));
        QVERIFY(write(other + QStringLiteral("/new")));
        QTRY_VERIFY(m_names.contains(QStringLiteral("new")));
        QVERIFY(!m_names.contains(QStringLiteral("old")));
        QVERIFY(!m_names.contains(QStringLiteral("queued")));
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

    void withoutDescriptorsLittleOrNothingIsTold()
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
        QTRY_VERIFY(m_names.contains(QStringLiteral("new")));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
    }

    void aListenerMayArmAnew()
    {
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        connect(
            m_events.get(), &FolderEvents::entriesChanged, m_events.get(),
            [this] { m_events->arm(m_folder); }, Qt::SingleShotConnection);
        QVERIFY(write(path("first")));
        QTRY_VERIFY(m_names.contains(QStringLiteral("first")));
        QVERIFY(write(path("second")));
        QTRY_VERIFY(m_names.contains(QStringLiteral("second")));
    }

private:
    QString path(const char *name) const { return m_folder + u'/' + QLatin1String(name); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_folder;
    std::unique_ptr<FolderEvents> m_events;
    QStringList m_names;
    std::unique_ptr<QSignalSpy> m_listAgain;
    std::unique_ptr<QSignalSpy> m_gone;
};

VELMORA_EVENTS_TEST(FolderEventsTest)
#include "FolderEventsTest.moc"
