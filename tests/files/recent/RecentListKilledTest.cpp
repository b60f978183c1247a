// SPDX-License-Identifier: MIT
#include "core/VelmoraSettings.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSet>
#include <QSettings>
#include <QTest>

/// A program that is killed while it stores the recent list leaves a complete list, the old or the
/// new one, and the user's other settings.
class RecentListKilledTest : public QObject
{
    Q_OBJECT

    static QString s(const char *text) { return QString::fromUtf8(text); }

private Q_SLOTS:
    void theStoredListIsAlwaysWhole()
    {
        constexpr int kills = 60;
        constexpr int files = 15;
        constexpr int patience = 30'000; // milliseconds
        const TestFiles folder;
        QSet<QString> known;
        for (int i = 0; i < files; ++i)
            known
                << folder.make(s("a rather long name of a screenshot %1.png").arg(i)).toLocalFile();
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        QVERIFY(VelmoraSettings::open().waitUntilStored(std::chrono::seconds(10)));

        for (int kill = 0; kill < kills; ++kill) {
            QProcess writer;
            writer.start(QStringLiteral(RECENT_LIST_WRITER), {folder.folder().toLocalFile()});
            // Each round kills the writer at a later moment.
            for (int line = 0; line <= kill % 4; ++line) {
                while (!writer.canReadLine())
                    QVERIFY2(writer.waitForReadyRead(patience),
                             "the list can't be stored any more");
                writer.readLine();
            }
            writer.kill();
            QVERIFY(writer.waitForFinished(patience));
            QCOMPARE(writer.exitStatus(), QProcess::CrashExit);

            const QFileInfo store(VelmoraSettings::open().fileName());
            const QSettings settings(store.filePath(), QSettings::IniFormat);
            QCOMPARE(settings.status(), QSettings::NoError);
            QCOMPARE(settings.value(s("trayPosition")).toString(), s("topLeft"));
            const QStringList stored = settings.value(s("recentScreenshots")).toStringList();
            const QSet<QString> distinct(stored.begin(), stored.end());
            QCOMPARE(distinct.size(), stored.size());
            QVERIFY2(known.contains(distinct), qPrintable(stored.join(u'\n')));
            QVERIFY(!stored.isEmpty() && stored.size() <= 10);
            // There is at most one draft at a time, because the next writer removes it.
            QStringList left =
                store.dir().entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
            left.removeAll(store.fileName());
            left.removeAll(s(".velmora.conf.new"));
            QCOMPARE(left, QStringList());
        }
    }
};

VELMORA_EVENTS_TEST(RecentListKilledTest)
#include "RecentListKilledTest.moc"
