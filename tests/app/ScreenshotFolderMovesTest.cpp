// SPDX-License-Identifier: MIT
#include "detection/ScreenshotFolder.h"
#include "filesystem/FileUrls.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The program follows changes of a screenshot tool's settings while it runs.
class ScreenshotFolderMovesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangedSettingMovesTheFolderWithinASecond_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        const auto row = [](const char *name, const char *desktop, const char *file,
                            const char *content) {
            QTest::newRow(name) << QByteArray(desktop) << QString::fromLatin1(file)
                                << QByteArray(content);
        };
        row("Spectacle", "KDE", "spectaclerc", "[Save]\ndefaultSaveLocation=file://%1/\n");
        row("Xfce", "XFCE", "xfce4/xfce4-screenshooter", "screenshot_dir=file:%1\n");
        row("Flameshot", "i3", "flameshot/flameshot.ini", "[General]\nsavePath=%1\n");
        row("ksnip", "LXDE", "ksnip/ksnip.conf", "[Application]\nSaveDirectory=%1\n");
        row("screengrab", "LXQt", "screengrab/screengrab.conf", "[Base]\ndefDir=%1\n");
        row("niri", "niri", "niri/config.kdl", "screenshot-path \"%1/%Y.png\"\n");
        row("the user's folders", "sway", "user-dirs.dirs", "XDG_SCREENSHOTS_DIR=\"%1\"\n");
    }

    void aChangedSettingMovesTheFolderWithinASecond()
    {
        QFETCH(const QByteArray, desktop);
        QFETCH(const QString, file);
        QFETCH(const QByteArray, content);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const QString path = qEnvironmentVariable("XDG_CONFIG_HOME") + u'/' + file;
        const auto preferences = makeScreenshotPreferences();
        ScreenshotFolder folder(*preferences);
        folder.current();
        Waiting::letPass(200ms);
        qint64 shortest = 1'000'000;
        for (const char *place : {"/srv/one", "/srv/two", "/srv/three"}) {
            QElapsedTimer timer;
            timer.start();
            // As KDE's and Qt's programs do: a new file replaces the old one.
            QVERIFY(QDir().mkpath(QFileInfo(path).path()));
            QFile made(path + u".new"_s);
            QVERIFY(made.open(QFile::WriteOnly));
            made.write(QByteArray(content).replace("%1", place));
            made.close();
            QFile::remove(path);
            QVERIFY(made.rename(path));
            const QUrl now = FileUrls::fromPath(QString::fromLatin1(place));
            QTRY_COMPARE_WITH_TIMEOUT(folder.current(), now, 20'000);
            shortest = std::min(shortest, timer.elapsed());
        }
        QVERIFY2(shortest < 1000, qPrintable(QString::number(shortest)));
        QVERIFY(QFile::remove(path));
    }

    void kdesOwnToolMovesTheFolderToo()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        const auto preferences = makeScreenshotPreferences();
        ScreenshotFolder folder(*preferences);
        folder.current();
        Waiting::letPass(200ms);
        QCOMPARE(QProcess::execute(u"kwriteconfig5"_s,
                                   {u"--file"_s, u"spectaclerc"_s, u"--group"_s, u"Save"_s,
                                    u"--key"_s, u"defaultSaveLocation"_s, u"file:///srv/kde/"_s}),
                 0);
        QTRY_COMPARE_WITH_TIMEOUT(folder.current(), FileUrls::fromPath(u"/srv/kde"_s), 20'000);
    }
};

VELMORA_EVENTS_TEST(ScreenshotFolderMovesTest)
#include "ScreenshotFolderMovesTest.moc"
