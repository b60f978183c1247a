// SPDX-License-Identifier: MIT
#include "core/VelmoraSettings.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

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
        for (const auto &entry : optionCases<SearchConsent>()) {
            VelmoraSettings::setSearchConsent(entry.option);
            QCOMPARE(VelmoraSettings::searchConsent(), entry.option);
        }
    }

    void anUnknownStoredValueReadsAsTheFallbackAndStays()
    {
        VelmoraSettings::open().setValue(u"trayDuration"_s, u"tenSeconds"_s);
        VelmoraSettings::open().setValue(u"copyBehavior"_s, u"Image"_s);
        QCOMPARE(VelmoraSettings::trayDuration(), TrayDuration::sixtySeconds);
        QCOMPARE(VelmoraSettings::copyBehavior(), CopyBehavior::none);
        QCOMPARE(VelmoraSettings::open().value(u"trayDuration"_s).toString(), u"tenSeconds"_s);
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

    void anExplanationIsRememberedAndTheOtherIsNot()
    {
        QVERIFY(!VelmoraSettings::isSet(SettingKeys::didExplainFolderAccess));
        VelmoraSettings::set(SettingKeys::didExplainFolderAccess);
        QVERIFY(VelmoraSettings::isSet(SettingKeys::didExplainFolderAccess));
        QVERIFY(!VelmoraSettings::isSet(SettingKeys::didExplainStartAtLogin));
    }

    void theKeysAreStoredByTheirNames()
    {
        VelmoraSettings::setCopyBehavior(CopyBehavior::imageAndFile);
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        VelmoraSettings::setSearchConsent(SearchConsent::refused);
        VelmoraSettings::set(SettingKeys::didExplainFolderAccess);
        VelmoraSettings::set(SettingKeys::didExplainStartAtLogin);
        VelmoraSettings::setRecentScreenshots({u"/a.png"_s, u"/b.png"_s});
        QVERIFY(VelmoraSettings::open().waitUntilStored(10s));
        // As any other Qt program would read it.
        const QSettings stored(VelmoraSettings::open().fileName(), QSettings::IniFormat);
        QCOMPARE(stored.value(u"copyBehavior"_s).toString(), u"imageAndFile"_s);
        QCOMPARE(stored.value(u"trayDuration"_s).toString(), u"untilDismissed"_s);
        QCOMPARE(stored.value(u"trayPosition"_s).toString(), u"topLeft"_s);
        QCOMPARE(stored.value(u"searchConsent"_s).toString(), u"refused"_s);
        QVERIFY(stored.value(u"didExplainFolderAccess"_s).toBool());
        QVERIFY(stored.value(u"didExplainStartAtLogin"_s).toBool());
        QCOMPARE(stored.value(u"recentScreenshots"_s).toStringList(),
                 (QStringList{u"/a.png"_s, u"/b.png"_s}));
        QCOMPARE(stored.allKeys().size(), 7);
    }

    void aChangeByAnotherProcessIsSeenAtTheNextRead()
    {
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        QVERIFY(VelmoraSettings::open().waitUntilStored(10s));
        QFile store(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/velmora/velmora.conf"_s);
        QVERIFY(store.open(QFile::ReadWrite));
        const QByteArray changed = store.readAll().replace("topLeft", "bottomLeft");
        store.seek(0);
        store.write(changed);
        store.close();
        QTRY_COMPARE(VelmoraSettings::trayPosition(), TrayPosition::bottomLeft);
    }
};

VELMORA_EVENTS_TEST(VelmoraSettingsTest)
#include "VelmoraSettingsTest.moc"
