// SPDX-License-Identifier: MIT
#include "core/SettingsStore.h"

#include "tests/world/SlowDisk.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr auto patience = 10s;
const QString key = u"trayDuration"_s;
const QString other = u"zOther"_s;

QString folder()
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + u"/velmora"_s;
}

QString path()
{
    return folder() + u"/store.conf"_s;
}

QByteArray encoded(const QString &name)
{
    return QFile::encodeName(name);
}

QByteArray content(const QString &name = path())
{
    struct stat status = {};
    QFile file(name);
    return ::lstat(encoded(name).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
                   file.open(QFile::ReadOnly)
               ? file.readAll()
               : QByteArray();
}

void fill(const QString &name, const QByteArray &text)
{
    QFile file(name);
    QVERIFY(file.open(QFile::WriteOnly) && file.write(text) == text.size());
}

mode_t modeOf(const QString &name)
{
    struct stat status = {};
    return ::lstat(encoded(name).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

QStringList entries()
{
    return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                    QDir::NoDotAndDotDot);
}

void makeTrap(const QByteArray &kind, const QString &name)
{
    if (kind == "pipe")
        QCOMPARE(::mkfifo(encoded(name).constData(), 0600), 0);
    else if (kind == "folder")
        QVERIFY(QDir().mkdir(name));
    else if (kind == "link to a device")
        QVERIFY(QFile::link(u"/dev/zero"_s, name));
    else if (kind == "link to a file")
        QVERIFY(QFile::link(u"/etc/hostname"_s, name));
    else if (kind == "link to itself")
        QVERIFY(QFile::link(name, name));
    else if (kind == "huge file")
        fill(name, "[General]\n" + QByteArray("key=value\n").repeated(9'000'000));
    else if (kind == "huge hole")
        QVERIFY((fill(name, "[General]\n"), QFile::resize(name, 1LL << 40)));
    else
        QFAIL("no such trap");
}

} // namespace

class SettingsStoreTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<SettingsStore> m_store;

    void begin() { m_store = std::make_unique<SettingsStore>(u"store"_s); }
    QString value() const { return m_store->value(key).toString(); }

    static qint64 millisecondsOf(const std::function<void()> &work)
    {
        QElapsedTimer timer;
        timer.start();
        work();
        return timer.elapsed();
    }

private Q_SLOTS:
    void init()
    {
        QDir(folder()).removeRecursively();
        QVERIFY(QDir().mkpath(folder()));
        SlowDisk::fast();
    }
    void cleanup()
    {
        SlowDisk::fast();
        m_store.reset();
    }

    void whatIsSetIsSeenAtOnceAndStoredSoon()
    {
        begin();
        QVERIFY(!m_store->value(key).isValid());
        m_store->setValue(key, u"fifteenSeconds"_s);
        QCOMPARE(value(), u"fifteenSeconds"_s);
        m_store->setValue(other, true);
        QCOMPARE(m_store->allKeys().size(), 2);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(content(), QByteArray("[General]\ntrayDuration=fifteenSeconds\nzOther=true\n"));
        m_store->remove(key);
        QVERIFY(!m_store->value(key).isValid());
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(content(), QByteArray("[General]\nzOther=true\n"));
    }

    void whatIsStoredIsReadAgain()
    {
        const QStringList list = {u"/a, b.png"_s, u"/c.png"_s};
        begin();
        m_store->setValue(key, u"x"_s);
        m_store->setValue(other, list);
        m_store.reset();
        begin();
        QCOMPARE(value(), u"x"_s);
        QCOMPARE(m_store->value(other).toStringList(), list);
    }

    void aMissingFolderIsMadeForItsOwnerAlone()
    {
        QVERIFY(QDir().rmdir(folder()));
        begin();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(modeOf(folder()), mode_t(0700));
        QCOMPARE(modeOf(path()), mode_t(0600));
    }

    void whatIsThereAlreadyBecomesItsOwnersAlone()
    {
        fill(path(), "[General]\ntrayDuration=x\n");
        QCOMPARE(::chmod(encoded(path()).constData(), 0644), 0);
        QCOMPARE(::chmod(encoded(folder()).constData(), 0755), 0);
        begin();
        QTRY_COMPARE(modeOf(path()), mode_t(0600));
        QTRY_COMPARE(modeOf(folder()), mode_t(0700));
        QCOMPARE(value(), u"x"_s);
        QCOMPARE(::chmod(encoded(path()).constData(), 0644), 0);
        m_store->setValue(key, u"y"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(modeOf(path()), mode_t(0600));
    }

    void aChangeByAnotherProcessIsSeenAtTheNextRead()
    {
        fill(path(), "[General]\ntrayDuration=0\n");
        begin();
        for (int i = 0; i < 200; ++i) {
            // Written in place or replaced, but always of the same size.
            const QByteArray text =
                QByteArray("[General]\ntrayDuration=") + QByteArray::number(100 + i) + '\n';
            if (i % 2 == 0) {
                fill(path(), text);
            } else {
                fill(path() + u'2', text);
                QCOMPARE(::rename(encoded(path() + u'2').constData(), encoded(path()).constData()),
                         0);
            }
            QTRY_COMPARE_WITH_TIMEOUT(value(), QString::number(100 + i), 2000);
        }
        QVERIFY(QFile::remove(path()));
        QTRY_VERIFY_WITH_TIMEOUT(!m_store->value(key).isValid(), 2000);
    }

    void anotherProcessKeepsWhatItHasStoredBeside()
    {
        begin();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        fill(path(), "; mine\n[General]\ntrayDuration=x\nzOther=theirs\n\n[Theirs]\na=1\n");
        m_store->setValue(key, u"y"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(content(),
                 QByteArray("; mine\n[General]\ntrayDuration=y\nzOther=theirs\n\n[Theirs]\na=1\n"));
        QCOMPARE(m_store->value(other).toString(), u"theirs"_s);
    }

    void whatIsStoredAlreadyIsNotWrittenAgain()
    {
        begin();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        const auto serial = [] {
            struct stat status = {};
            return ::lstat(encoded(path()).constData(), &status) == 0 ? status.st_ino : 0;
        };
        const ino_t before = serial();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(serial(), before);
    }

    void nothingIsTakenFromTheFilesForAllUsers()
    {
        const QString system = QDir::homePath() + u"/xdg"_s;
        QVERIFY(QDir().mkpath(system + u"/velmora"_s));
        fill(system + u"/velmora/store.conf"_s, "[General]\ntrayDuration=system\n");
        fill(system + u"/velmora.conf"_s, "[General]\ntrayDuration=system\n");
        qputenv("XDG_CONFIG_DIRS", encoded(system));
        begin();
        QVERIFY(m_store->waitUntilRead(patience));
        QVERIFY(!m_store->value(key).isValid());
        qunsetenv("XDG_CONFIG_DIRS");
    }

    void trapsAreReadAsAbsentAndSetAside_data()
    {
        QTest::addColumn<QByteArray>("kind");
        for (const char *kind : {"pipe", "folder", "link to a device", "link to a file",
                                 "link to itself", "huge file", "huge hole"})
            QTest::newRow(kind) << QByteArray(kind);
    }

    void trapsAreReadAsAbsentAndSetAside()
    {
        QFETCH(QByteArray, kind);
        makeTrap(kind, path());
        struct stat before = {};
        QCOMPARE(::lstat(encoded(path()).constData(), &before), 0);
        begin();
        QVERIFY(m_store->waitUntilRead(patience));
        QVERIFY(!m_store->value(key).isValid());
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(content(), QByteArray("[General]\ntrayDuration=x\n"));
        struct stat after = {};
        QCOMPARE(::lstat(encoded(path() + u".aside-1"_s).constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
        QCOMPARE(after.st_size, before.st_size);
        QCOMPARE(content(u"/etc/hostname"_s).contains("trayDuration"), false);
    }

    void trapsAtTheLocksPlaceHoldNobodyUp_data()
    {
        QTest::addColumn<QByteArray>("kind");
        for (const char *kind : {"pipe", "folder", "link to a device"})
            QTest::newRow(kind) << QByteArray(kind);
    }

    void trapsAtTheLocksPlaceHoldNobodyUp()
    {
        QFETCH(QByteArray, kind);
        makeTrap(kind, path() + u".lock"_s);
        makeTrap(kind, folder() + u"/.store.conf.new"_s);
        begin();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(1s));
        QCOMPARE(content(), QByteArray("[General]\ntrayDuration=x\n"));
    }

    void aLockOfAnotherHostHoldsNobodyUp()
    {
        fill(path() + u".lock"_s, "4711\nvelmora\nanother-host\n\n\n");
        begin();
        m_store->setValue(key, u"x"_s);
        QVERIFY(m_store->waitUntilStored(1s));
    }

    void aWriterThatIsStoppedIsNotWaitedForForEver()
    {
        const int stopped = ::open(encoded(folder()).constData(), O_RDONLY | O_DIRECTORY);
        QVERIFY(stopped >= 0);
        QCOMPARE(::flock(stopped, LOCK_EX), 0);
        begin();
        QVERIFY(m_store->waitUntilRead(patience));
        QVERIFY(millisecondsOf([this] { m_store->setValue(key, u"x"_s); }) < 500);
        QVERIFY(m_store->waitUntilStored(patience));
        ::close(stopped);
        QCOMPARE(content(), QByteArray("[General]\ntrayDuration=x\n"));
    }

    void whatAKilledWriterHasLeftIsClearedAtTheNextStart()
    {
        fill(folder() + u"/.store.conf.new"_s, "[Gen");
        fill(folder() + u"/store.conf.backup"_s, "the user's");
        begin();
        QTRY_COMPARE(entries(), QStringList(u"store.conf.backup"_s));
        QVERIFY(!m_store->value(key).isValid());
    }

    void aDiskThatRefusesLosesNothingThatIsSetHere()
    {
        begin();
        QVERIFY(m_store->waitUntilRead(patience));
        QDir(folder()).removeRecursively();
        fill(folder(), "no folder");
        m_store->setValue(key, u"x"_s);
        QVERIFY(!m_store->waitUntilStored(1s));
        QCOMPARE(value(), u"x"_s);
        QVERIFY(QFile::remove(folder()));
        m_store->setValue(other, u"y"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(content(), QByteArray("[General]\ntrayDuration=x\nzOther=y\n"));
    }

    void theMainThreadAsksNoDiskForAnything()
    {
        fill(path(), "[General]\ntrayDuration=x\n");
        SlowDisk::startCounting();
        begin();
        QTRY_COMPARE(value(), u"x"_s);
        m_store->setValue(key, u"y"_s);
        QVERIFY(m_store->waitUntilStored(patience));
        QCOMPARE(value(), u"y"_s);
        m_store.reset();
        QCOMPARE(SlowDisk::mainThreadCalls(), QByteArrayList());
    }

    void aDiskThatIsSlowToFlushHoldsNobodyUp()
    {
        begin();
        QVERIFY(m_store->waitUntilRead(patience));
        SlowDisk::slow({encoded(folder())}, 500ms, "fsync,fdatasync,rename");
        const qint64 taken = millisecondsOf([this] {
            for (int i = 0; i < 20; ++i) {
                m_store->setValue(key, QString::number(i));
                QCOMPARE(value(), QString::number(i));
            }
        });
        QVERIFY2(taken < 250, QByteArray::number(taken).constData());
        m_store->waitUntilStored(patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_store->waitUntilStored(patience), 30'000);
        QCOMPARE(content(), QByteArray("[General]\ntrayDuration=19\n"));
    }

    void aDiskThatIsSlowToOpenHoldsNobodyUp()
    {
        fill(path(), "[General]\ntrayDuration=x\n");
        SlowDisk::slow({encoded(folder())}, 500ms);
        const qint64 taken = millisecondsOf([this] {
            begin();
            for (int i = 0; i < 50; ++i)
                m_store->value(key);
        });
        // The first read waits 50 ms, all others together 5 ms.
        QVERIFY2(taken < 300, QByteArray::number(taken).constData());
        m_store->setValue(other, u"set before it was read"_s);
        QTRY_COMPARE_WITH_TIMEOUT(value(), u"x"_s, 10'000);
        SlowDisk::fast();
        QTRY_VERIFY_WITH_TIMEOUT(m_store->waitUntilStored(patience), 30'000);
        QCOMPARE(content(),
                 QByteArray("[General]\ntrayDuration=x\nzOther=set before it was read\n"));
    }

    void itsEndStoresWhatWasSetButDoesNotWaitForADeadDisk()
    {
        begin();
        QVERIFY(m_store->waitUntilRead(patience));
        SlowDisk::slow({encoded(folder())}, 50ms);
        m_store->setValue(key, u"x"_s);
        m_store.reset();
        SlowDisk::fast();
        QCOMPARE(content(), QByteArray("[General]\ntrayDuration=x\n"));
        begin();
        QVERIFY(m_store->waitUntilRead(patience));
        SlowDisk::slow({encoded(folder())}, 20s, "fsync");
        m_store->setValue(key, u"y"_s);
        QVERIFY(millisecondsOf([this] { m_store.reset(); }) < 5000);
    }
};

VELMORA_EVENTS_TEST(SettingsStoreTest)
#include "SettingsStoreTest.moc"
