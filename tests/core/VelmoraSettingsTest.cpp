#include "core/VelmoraSettings.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <sys/file.h>

class VelmoraSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { VelmoraSettings::open().clear(); }

    void aFreshInstallationHasTheFallbacks()
    {
        QCOMPARE(VelmoraSettings::copyBehavior(), CopyBehavior::none);
        QCOMPARE(VelmoraSettings::trayDuration(), TrayDuration::sixtySeconds);
        QCOMPARE(VelmoraSettings::trayPosition(), TrayPosition::bottomRight);
    }

    void everyCaseIsReadBackAsWritten()
    {
        for (const auto &entry : optionCases<CopyBehavior>()) {
            VelmoraSettings::setCopyBehavior(entry.option);
            QCOMPARE(VelmoraSettings::copyBehavior(), entry.option);
        }
        for (const auto &entry : optionCases<TrayDuration>()) {
            VelmoraSettings::setTrayDuration(entry.option);
            QCOMPARE(VelmoraSettings::trayDuration(), entry.option);
        }
        for (const auto &entry : optionCases<TrayPosition>()) {
            VelmoraSettings::setTrayPosition(entry.option);
            QCOMPARE(VelmoraSettings::trayPosition(), entry.option);
        }
    }

    void anUnknownStoredValueReadsAsTheFallbackAndStays()
    {
        VelmoraSettings::open().setValue(QStringLiteral("trayDuration"),
                                         QStringLiteral("tenSeconds"));
        VelmoraSettings::open().setValue(QStringLiteral("copyBehavior"), QStringLiteral("Image"));
        QCOMPARE(VelmoraSettings::trayDuration(), TrayDuration::sixtySeconds);
        QCOMPARE(VelmoraSettings::copyBehavior(), CopyBehavior::none);
        QCOMPARE(VelmoraSettings::open().value(QStringLiteral("trayDuration")).toString(),
                 QStringLiteral("tenSeconds"));
    }

    void aMenuIndexOutOfRangeGivesTheFallback()
    {
        QCOMPARE(VelmoraSettings::copyBehaviorAt(1), CopyBehavior::image);
        QCOMPARE(VelmoraSettings::copyBehaviorAt(-1), CopyBehavior::none);
        QCOMPARE(VelmoraSettings::copyBehaviorAt(4), CopyBehavior::none);
        QCOMPARE(VelmoraSettings::trayDurationAt(0), TrayDuration::fifteenSeconds);
        QCOMPARE(VelmoraSettings::trayDurationAt(-1), TrayDuration::sixtySeconds);
        QCOMPARE(VelmoraSettings::trayPositionAt(3), TrayPosition::topLeft);
        QCOMPARE(VelmoraSettings::trayPositionAt(4), TrayPosition::bottomRight);
    }

    void theLockOfAKilledWriterHoldsNobodyUp()
    {
        QFile lock(VelmoraSettings::open().fileName() + QStringLiteral(".lock"));
        QVERIFY(lock.open(QFile::WriteOnly));
        lock.close();
        QElapsedTimer timer;
        timer.start();
        VelmoraSettings::setTrayPosition(TrayPosition::topRight);
        QVERIFY2(timer.elapsed() < 10'000, QByteArray::number(timer.elapsed()).constData());
        QVERIFY(!lock.exists());
    }

    void theLockOfALivingWriterStays()
    {
        QFile lock(VelmoraSettings::open().fileName() + QStringLiteral(".lock"));
        QVERIFY(lock.open(QFile::WriteOnly));
        QCOMPARE(::flock(lock.handle(), LOCK_EX), 0);
        VelmoraSettings::open();
        QVERIFY(lock.exists());
        QVERIFY(lock.remove());
    }

    void aChangeByAnotherProcessIsSeenAtTheNextRead()
    {
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        QFile store(qEnvironmentVariable("XDG_CONFIG_HOME") +
                    QStringLiteral("/velmora/velmora.conf"));
        QVERIFY(store.open(QFile::ReadWrite));
        const QByteArray changed = store.readAll().replace("topLeft", "bottomLeft");
        store.seek(0);
        store.write(changed);
        store.close();
        QCOMPARE(VelmoraSettings::trayPosition(), TrayPosition::bottomLeft);
    }
};

QTEST_GUILESS_MAIN(VelmoraSettingsTest)
#include "VelmoraSettingsTest.moc"
