// SPDX-License-Identifier: MIT
#include "tests/core/SettingsStoreFixture.h"
#include "tests/world/SlowDisk.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A disk that is slow or refuses: nobody waits for it, and nothing is lost.
class SettingsOnSlowDiskTest : public QObject, private SettingsStoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        clear();
        SlowDisk::fast();
    }
    void cleanup()
    {
        SlowDisk::fast();
        end();
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

VELMORA_EVENTS_TEST(SettingsOnSlowDiskTest)
#include "SettingsOnSlowDiskTest.moc"
