// SPDX-License-Identifier: MIT
#include "platform/SystemWords.h"
#include "tests/world/TestProgram.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

class SystemWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachTextIsTrueWhereItIsShown_data()
    {
        QTest::addColumn<QString>("onMac");
        QTest::addColumn<QString>("onLinux");
        using namespace SystemWords;
        for (const SystemText &text :
             {welcome, instantIsOn, instantIsOff, privacy, screenshotsStay, permissionsTitle,
              permissions, startAtLogin, folderAccess, systemQuestion, reveal}) {
            QTest::newRow(qUtf8Printable(text.onMac.toString()))
                << text.onMac.toString() << text.onLinux.toString();
        }
    }

    void eachTextIsTrueWhereItIsShown()
    {
        QFETCH(const QString, onMac);
        QFETCH(const QString, onLinux);
        static const QRegularExpression ofAMac(u"\\bMac\\b|macOS|Finder|Screen Recording"_s);
        QVERIFY(onMac.contains(ofAMac));
        QVERIFY(!onLinux.contains(ofAMac));
        QVERIFY(!onLinux.contains(u"delay"_s));
        QVERIFY(!onLinux.isEmpty());
    }

    void aMacLacksNothing()
    {
        using namespace SystemWords;
        for (const SystemText &text :
             {noStatusItem, noTrayPlace, noApplicationInFront, keyHasFixedFolder}) {
            QVERIFY(text.onMac.isEmpty());
            QVERIFY(!text.onLinux.isEmpty());
        }
    }

    void hereIsLinux()
    {
        QCOMPARE(SystemWords::reveal.here(), u"Show in File Manager"_s);
        QCOMPARE(SystemWords::screenshotsStay.here(), u"Screenshots stay on this computer"_s);
    }
};

VELMORA_WIDGETS_TEST(SystemWordsTest)
#include "SystemWordsTest.moc"
