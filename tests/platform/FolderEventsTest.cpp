// SPDX-License-Identifier: MIT
#include "tests/platform/FolderEventsFixture.h"
#include "tests/world/TestProgram.h"

#include <QElapsedTimer>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// What is reported of a folder's entries.
class FolderEventsTest : public QObject, FolderEventsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void everyChangeOfAnEntryIsReported()
    {
        const QString aside = m_directory->path() + u"/aside"_s;
        QVERIFY(write(path("old")));
        QVERIFY(write(aside));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        const auto isReported = [this](const char *name) {
            const bool reported =
                QTest::qWaitFor([this, name] { return m_names.contains(QLatin1String(name)); });
            // Anything else that the same action causes arrives before the next one.
            QCoreApplication::processEvents();
            m_names.clear();
            return reported;
        };
        QVERIFY(write(path("new")));
        QVERIFY(isReported("new"));
        QVERIFY(write(path("old")));
        QVERIFY(isReported("old"));
        QVERIFY(::utimensat(AT_FDCWD, raw(path("old")).constData(), nullptr, 0) == 0);
        QVERIFY(isReported("old"));
        QVERIFY(::link(raw(path("old")).constData(), raw(path("linked")).constData()) == 0);
        QVERIFY(isReported("linked"));
        QVERIFY(::rename(raw(path("old")).constData(), raw(path("renamed")).constData()) == 0);
        QTRY_VERIFY(m_names.contains(u"old"_s));
        QVERIFY(isReported("renamed"));
        QVERIFY(::rename(raw(path("renamed")).constData(), raw(aside).constData()) == 0);
        QVERIFY(isReported("renamed"));
        QVERIFY(::rename(raw(aside).constData(), raw(path("returned")).constData()) == 0);
        QVERIFY(isReported("returned"));
        QVERIFY(QFile::remove(path("returned")));
        QVERIFY(isReported("returned"));
        QVERIFY(QDir().mkdir(path("folder")));
        QVERIFY(isReported("folder"));
        QVERIFY(QDir().rmdir(path("folder")));
        QVERIFY(isReported("folder"));
        QVERIFY(::symlink("nowhere", raw(path("link")).constData()) == 0);
        QVERIFY(isReported("link"));
        QCOMPARE(m_listAgain->count(), 0);
        QCOMPARE(m_gone->count(), 0);
    }

    void aFileThatGetsItsNameWhenItIsCompleteIsReported()
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
        QTRY_COMPARE(m_names, QStringList(u"shot.png"_s));
    }

    void onlyTheFolderItselfIsReported()
    {
        QVERIFY(QDir().mkdir(path("sub")));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(write(path("sub/inside")));
        QVERIFY(write(m_directory->path() + u"/outside"_s));
        QVERIFY(write(path("last")));
        QTRY_VERIFY(m_names.contains(u"last"_s));
        QVERIFY(!m_names.contains(u"inside"_s));
        QVERIFY(!m_names.contains(u"outside"_s));
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
        QFile limit(u"/proc/sys/fs/inotify/max_queued_events"_s);
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
        QTRY_VERIFY(m_names.contains(u"later"_s));
    }

    void aStormOfWritesIsReportedSeldom()
    {
        QVERIFY(write(path("large")));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QSignalSpy reported(m_events.get(), &FolderEvents::entriesChanged);
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
        QVERIFY(reported.count() > 1);
        QVERIFY2(reported.count() <= 30, qPrintable(QString::number(reported.count())));
        reported.clear();
        file.close();
        QTRY_COMPARE(reported.count(), 1);
    }

    void aStormOfWritesDoesNotHoldUpANewFile()
    {
        QVERIFY(write(path("large")));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(write(path("large")));
        QTRY_VERIFY(m_names.contains(u"large"_s));
        // The pause after that has only just begun.
        QVERIFY(write(path("large")));
        QVERIFY(write(path("new")));
        QCoreApplication::processEvents();
        QVERIFY(m_names.contains(u"new"_s));
    }

    void armingAnewEndsTheOldWatch()
    {
        const QString other = m_directory->path() + u"/other"_s;
        QVERIFY(QDir().mkdir(other));
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        QVERIFY(write(path("queued")));
        QCOMPARE(m_events->arm(other), Coverage::All);
        QVERIFY(write(path("old")));
        QVERIFY(write(other + u"/new"_s));
        QTRY_VERIFY(m_names.contains(u"new"_s));
        QVERIFY(!m_names.contains(u"old"_s));
        QVERIFY(!m_names.contains(u"queued"_s));
    }

    void aListenerMayArmAnew()
    {
        QCOMPARE(m_events->arm(m_folder), Coverage::All);
        connect(
            m_events.get(), &FolderEvents::entriesChanged, m_events.get(),
            [this] { m_events->arm(m_folder); }, Qt::SingleShotConnection);
        QVERIFY(write(path("first")));
        QTRY_VERIFY(m_names.contains(u"first"_s));
        QVERIFY(write(path("second")));
        QTRY_VERIFY(m_names.contains(u"second"_s));
    }
};

VELMORA_EVENTS_TEST(FolderEventsTest)
#include "FolderEventsTest.moc"
