// SPDX-License-Identifier: MIT
#include "tests/core/SettingsStoreFixture.h"
#include "tests/world/TestProgram.h"

#include <QTest>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What others have put, locked or left where the settings are stored.
class SettingsTrapsTest : public QObject, private SettingsStoreFixture
{
    Q_OBJECT

    static void makeTrap(const QByteArray &kind, const QString &name)
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

private Q_SLOTS:
    void init() { clear(); }
    void cleanup() { end(); }

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
        const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::System;
        QTRY_COMPARE(QDir(folder()).entryList(all | QDir::NoDotAndDotDot),
                     QStringList(u"store.conf.backup"_s));
        QVERIFY(!m_store->value(key).isValid());
    }
};

VELMORA_EVENTS_TEST(SettingsTrapsTest)
#include "SettingsTrapsTest.moc"
