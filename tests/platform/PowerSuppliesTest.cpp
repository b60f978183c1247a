// SPDX-License-Identifier: MIT
#include "platform/linux/power/PowerSupplies.h"

#include "platform/PowerSource.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

/// The batteries, with files like the kernel's.
class PowerSuppliesTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;

    void supply(const QString &name, const QMap<QString, QByteArray> &values) const
    {
        QDir(m_folder->path()).mkdir(name);
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            QFile file(m_folder->filePath(name + u'/' + value.key()));
            QVERIFY(file.open(QFile::WriteOnly));
            file.write(value.value() + '\n');
        }
    }
    void battery(const QString &name, const QByteArray &status, const QByteArray &capacity) const
    {
        supply(name, {{u"type"_s, "Battery"}, {u"status"_s, status}, {u"capacity"_s, capacity}});
    }
    std::optional<int> level() const { return PowerSupplies::batteryInUse(m_folder->path()); }

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void aComputerWithoutBatteryUsesNone()
    {
        QCOMPARE(level(), std::nullopt);
        supply(u"AC"_s, {{u"type"_s, "Mains"}, {u"online"_s, "0"}});
        QCOMPARE(level(), std::nullopt);
    }

    void aBatteryThatIsUsedUpTellsItsLevel()
    {
        battery(u"BAT0"_s, "Discharging", "17");
        supply(u"AC"_s, {{u"type"_s, "Mains"}, {u"online"_s, "0"}});
        QCOMPARE(level(), 17);
        battery(u"BAT1"_s, "Not charging", "63");
        QCOMPARE(level(), 40);
    }

    void whatIsPluggedInUsesNone()
    {
        battery(u"BAT0"_s, "Charging", "5");
        QCOMPARE(level(), std::nullopt);
        battery(u"BAT1"_s, "Discharging", "5");
        supply(u"ucsi-source"_s, {{u"type"_s, "USB"}, {u"online"_s, "1"}});
        QCOMPARE(level(), std::nullopt);
    }

    void theBatteryOfAMouseDoesNotCount()
    {
        supply(u"hid-mouse"_s, {{u"type"_s, "Battery"},
                                {u"scope"_s, "Device"},
                                {u"status"_s, "Discharging"},
                                {u"capacity"_s, "5"}});
        QCOMPARE(level(), std::nullopt);
    }

    void theComputerThatThisRunsOnAnswers()
    {
        const std::optional<int> here = makePowerSource()->batteryInUse();
        QVERIFY(!here || (*here >= 0 && *here <= 100));
    }
};

VELMORA_PLAIN_TEST(PowerSuppliesTest)
#include "PowerSuppliesTest.moc"
