// SPDX-License-Identifier: MIT
#include "platform/ScreenshotPreferences.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace std::chrono_literals;

namespace
{

QString configPath(const QString &name)
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + u'/' + name;
}

QString inHome(const QString &name)
{
    return QDir::homePath() + u'/' + name;
}

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

/// An executable file of that name in its own folder, the only one that is searched.
QString onlyTool(const QTemporaryDir &folder, const QString &name)
{
    const QString path = folder.filePath(name);
    if (!writeFile(path, "#!/bin/sh\n") ||
        !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        return {};
    qputenv("PATH", QFile::encodeName(folder.path()));
    return path;
}

} // namespace

class ScreenshotPreferencesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_path = qgetenv("PATH"); }

    void init()
    {
        QDir(qEnvironmentVariable("XDG_CONFIG_HOME")).removeRecursively();
        QVERIFY(QDir().mkpath(qEnvironmentVariable("XDG_CONFIG_HOME")));
        for (const char *name :
             {"GSETTINGS_SCHEMA_DIR", "GSETTINGS_BACKEND", "XDG_CURRENT_DESKTOP",
              "XDG_SCREENSHOTS_DIR", "GRIM_DEFAULT_DIR", "HYPRSHOT_DIR", "KDE_SESSION_VERSION"})
            qunsetenv(name);
        qputenv("PATH", m_path);
        m_preferences = makeScreenshotPreferences();
    }

    void nothingIsStoredAtFirst()
    {
        QVERIFY(!m_preferences->location());
        QVERIFY(!m_preferences->showsThumbnail());
        QVERIFY(!m_preferences->desktopToolFolder());
    }

    void aStoredLocationIsReadBackAsItStands_data()
    {
        QTest::addColumn<QString>("location");
        for (const char *location : {"/srv/shots", "~/Pictures/Shots", "/a, b; c=d/100%",
                                     "/Bürö/日本", "@Invalid()", "\"x\"", "/back\\slash", ""})
            QTest::newRow(location) << QString::fromUtf8(location);
    }

    void aStoredLocationIsReadBackAsItStands()
    {
        QFETCH(QString, location);
        QCOMPARE(m_preferences->storeLocation(location), QList<SystemCommand>());
        QCOMPARE(m_preferences->location(), location);
        QTRY_COMPARE(makeScreenshotPreferences()->location(), location);
    }

    void theDomainIsAFileBesideThePreferences()
    {
        QVERIFY(m_preferences->storeLocation(QStringLiteral("/srv/shots")).isEmpty());
        QVERIFY(m_preferences->storeShowsThumbnail(false).isEmpty());
        const QString file = configPath(QStringLiteral("velmora/com.apple.screencapture.conf"));
        QTRY_COMPARE(readFile(file),
                     QByteArray("[General]\nlocation=/srv/shots\nshow-thumbnail=false\n"));
        QVERIFY(writeFile(file, "[General]\nlocation=/srv/other places\nshow-thumbnail=true\n"));
        QTRY_COMPARE(m_preferences->location(), QStringLiteral("/srv/other places"));
        QCOMPARE(m_preferences->showsThumbnail(), true);
    }

    void theLockOfAKilledWriterHoldsNobodyUp_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("killed before it wrote its name") << QByteArray();
        QTest::newRow("of another host") << QByteArray("4711\nvelmora\nelsewhere\n\n\n");
    }

    void theLockOfAKilledWriterHoldsNobodyUp()
    {
        QFETCH(QByteArray, content);
        const QString file = configPath(QStringLiteral("velmora/com.apple.screencapture.conf"));
        QVERIFY(writeFile(file, "[General]\nshow-thumbnail=false\n"));
        QVERIFY(writeFile(file + QStringLiteral(".lock"), content));
        QElapsedTimer timer;
        timer.start();
        QVERIFY(m_preferences->storeLocation(QStringLiteral("/srv/shots")).isEmpty());
        QVERIFY(timer.elapsed() < 2000);
        QTRY_COMPARE(readFile(file),
                     QByteArray("[General]\nshow-thumbnail=false\nlocation=/srv/shots\n"));
        QCOMPARE(QDir(configPath(QStringLiteral("velmora"))).entryList(QDir::Files).size(), 2);
    }

    void aPipeInThePlaceOfAToolsFileHoldsNobodyUp()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        const QString file = configPath(QStringLiteral("xfce4/xfce4-screenshooter"));
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        for (const QString &pipe : {file, configPath(QStringLiteral("user-dirs.dirs"))})
            QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(!m_preferences->desktopToolFolder());
        QVERIFY(m_preferences->storeLocation(QStringLiteral("/srv/shots")).isEmpty());
    }

    void whatIsNoBooleanIsNoThumbnailSetting()
    {
        for (const char *value : {"", "1", "no", "True", "true, false"}) {
            QVERIFY(writeFile(configPath(QStringLiteral("velmora/com.apple.screencapture.conf")),
                              "[General]\nshow-thumbnail=" + QByteArray(value) + "\n"));
            QVERIFY2(!makeScreenshotPreferences()->showsThumbnail(), value);
        }
    }

    void theThumbnailSettingIsReadBack()
    {
        QVERIFY(m_preferences->storeShowsThumbnail(false).isEmpty());
        QCOMPARE(m_preferences->showsThumbnail(), false);
        QVERIFY(m_preferences->storeShowsThumbnail(true).isEmpty());
        QCOMPARE(m_preferences->showsThumbnail(), true);
    }

    void theDesktopsToolTellsItsFolder_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("folder"); // in the home folder; empty for none

        const auto row = [](const char *name, const char *desktop, const char *file,
                            const char *content, const char *folder) {
            QTest::newRow(name) << QByteArray(desktop) << QString::fromUtf8(file)
                                << QByteArray(content) << QString::fromUtf8(folder);
        };
        const char *const dirs = "user-dirs.dirs";
        row("GNOME, as it comes", "GNOME", dirs, "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n",
            "Bilder/Screenshots");
        row("GNOME of Ubuntu", "ubuntu:GNOME", dirs, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n",
            "Pictures/Screenshots");
        row("GNOME without pictures", "GNOME", dirs, "XDG_PICTURES_DIR=\"$HOME/\"\n",
            "Screenshots");
        row("GNOME without folders", "GNOME", dirs, "# nothing\n", "Screenshots");

        const char *const spectacle = "spectaclerc";
        row("Spectacle, as it comes", "KDE", spectacle, "", "Pictures");
        row("Spectacle with a frozen name", "KDE", spectacle,
            "[ImageSave]\ntranslatedScreenshotsFolder=Bildschirmfotos\n",
            "Pictures/Bildschirmfotos");
        row("Spectacle 24.02", "KDE", spectacle,
            "[General]\nautoSaveImage=true\n\n[ImageSave]\n"
            "imageSaveLocation=file://%HOME%/My%20Shots,%20new/\n",
            "My Shots, new");
        row("Spectacle 19.12", "KDE", spectacle,
            "[Save]\ndefaultSaveLocation=file://%HOME%/Shots\n", "Shots");
        row("Spectacle 19.08", "KDE", spectacle,
            "[General]\ndefault-save-location[$e]=$HOME/Shots\n", "Shots");
        row("Spectacle on a server", "KDE", spectacle,
            "[ImageSave]\nimageSaveLocation=smb://server/shots\n", "");
        row("Spectacle in the home", "KDE", spectacle,
            "[ImageSave]\nimageSaveLocation=file://%HOME%/\n", "");
        row("Spectacle with a key of another group", "KDE", spectacle,
            "[Other]\nimageSaveLocation=file://%HOME%/Other\n", "Pictures");

        const char *const xfce = "xfce4/xfce4-screenshooter";
        row("Xfce, as it comes", "XFCE", xfce, "", "");
        row("Xfce with pictures", "XFCE", dirs, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n",
            "Pictures");
        row("Xfce with one slash", "XFCE", xfce,
            "delay=0\nscreenshot_dir=file:%HOME%/My%20Shots\naction=1\n", "My Shots");
        row("Xfce with three slashes", "XFCE", xfce, "screenshot_dir=file://%HOME%/Shots\n",
            "Shots");
        row("Xfce with a path", "XFCE", xfce, "screenshot_dir=%HOME%/Shots\n", "Shots");
        row("Xfce on a server", "XFCE", xfce, "screenshot_dir=sftp://server/shots\n", "");
        row("Xfce on another host", "XFCE", xfce, "screenshot_dir=file://server/shots\n", "");

        row("grim with screenshots", "sway", dirs,
            "XDG_PICTURES_DIR=\"$HOME/Pictures\"\nXDG_SCREENSHOTS_DIR=\"$HOME/Shots \\$1\"\n",
            "Shots $1");
        row("grim with pictures", "Hyprland", dirs, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n",
            "Pictures");
        row("grim without folders", "sway:wlroots", dirs, "", "");
        row("grim in the home", "river", dirs, "XDG_PICTURES_DIR=\"$HOME/\"\n", "");

        row("COSMIC", "COSMIC", dirs, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n", "Pictures");
        row("Cinnamon, as it comes", "X-Cinnamon", dirs, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n",
            "Pictures");
        row("MATE, as it comes", "MATE", dirs, "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n",
            "Schreibtisch");
        row("niri, as it comes", "niri", dirs, "", "Pictures/Screenshots");

        const char *const niri = "niri/config.kdl";
        row("niri with a pattern", "niri", niri,
            "input {\n    // screenshot-path \"~/No/a.png\"\n}\n"
            "screenshot-path \"~/My Shots/Screenshot from %Y-%m-%d %H-%M-%S.png\"\n",
            "My Shots");
        row("niri that saves nothing", "niri", niri, "  screenshot-path null\n", "");

        const char *const flameshot = "flameshot/flameshot.ini";
        row("Flameshot under i3", "i3", flameshot,
            "[General]\ncontrastOpacity=188\nsavePath=%HOME%/My Shots\nsavePathFixed=true\n",
            "My Shots");
        row("Flameshot on an unset desktop", "", flameshot, "[General]\nsavePath=%HOME%/Shots\n",
            "Shots");
        row("Flameshot under Deepin", "Deepin", flameshot, "[General]\nsavePath=%HOME%/Shots\n",
            "Shots");
        row("Flameshot, an old version's letters", "LXDE", flameshot,
            "[General]\nsavePath=%HOME%/Sch\\xf6n\n", "Schön");
        row("Flameshot with a comma", "LXDE", flameshot, "[General]\nsavePath=\"%HOME%/a, b; c\"\n",
            "a, b; c");
        row("Flameshot, from the home folder", "i3", flameshot, "[General]\nsavePath=Shots/new/\n",
            "Shots/new");
        row("Flameshot in the home", "i3", flameshot, "[General]\nsavePath=%HOME%/\n", "");
        row("Flameshot, as it comes", "i3", flameshot, "[General]\nsavePath=\n", "");
        row("Flameshot on a desktop with a tool of its own", "COSMIC", flameshot,
            "[General]\nsavePath=%HOME%/Shots\n", "");
        row("Flameshot where grim has no folder", "sway", flameshot,
            "[General]\nsavePath=%HOME%/Shots\n", "Shots");

        const char *const ksnip = "ksnip/ksnip.conf";
        row("ksnip under LXDE", "LXDE", ksnip,
            "[Application]\nAutoSaveNewCaptures=true\nSaveDirectory=%HOME%/Shots\n\n"
            "[MainWindow]\nSaveDirectory=%HOME%/Other\n",
            "Shots");
        row("ksnip with a key of another group", "LXDE", ksnip,
            "[General]\nSaveDirectory=%HOME%/Other\n[Application]\nSaveFilename=ksnip_$Y\n", "");

        const char *const screengrab = "screengrab/screengrab.conf";
        row("screengrab under LXQt", "LXQt", screengrab,
            "[Base]\ndefDir=%HOME%/Pictures/Screens\ndefFilename=screen\n[Base_2]\ndefDir=/no\n",
            "Pictures/Screens");
        row("screengrab in the home", "LXQt", screengrab, "[Base]\ndefDir=%HOME%\n", "");
        row("Flameshot under LXQt", "LXQt", flameshot, "[General]\nsavePath=%HOME%/Shots\n",
            "Shots");

        row("elementary, as it comes", "Pantheon", dirs, "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n",
            "Bilder/Screenshots");
        row("Unity, as it comes", "Unity:Unity7:ubuntu", dirs,
            "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n", "Pictures");

        row("an unknown desktop", "Enlightenment", dirs, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n",
            "");
        row("an unknown desktop with screenshots", "Enlightenment", dirs,
            "XDG_SCREENSHOTS_DIR=\"$HOME/Shots\"\n", "Shots");
        row("a damaged file", "sway", dirs, "XDG_PICTURES_DIR=\n=\n\"\nXDG_SCREENSHOTS_DIR=\"\n",
            "");
    }

    void theDesktopsToolTellsItsFolder()
    {
        QFETCH(QByteArray, desktop);
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QString, folder);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        QVERIFY(writeFile(configPath(file),
                          content.replace("%HOME%", QFile::encodeName(QDir::homePath()))));
        QCOMPARE(m_preferences->desktopToolFolder(),
                 folder.isEmpty() ? std::nullopt : std::optional(inHome(folder)));
    }

    void aNewerPlasmaSavesInAFolderOfItsOwn()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        qputenv("KDE_SESSION_VERSION", "6");
        QCOMPARE(m_preferences->desktopToolFolder(),
                 inHome(QStringLiteral("Pictures/Screenshots")));
    }

    void theEnvironmentTellsWhereGrimSaves()
    {
        qputenv("XDG_CURRENT_DESKTOP", "sway");
        qputenv("GRIM_DEFAULT_DIR", "/srv/grim");
        QCOMPARE(m_preferences->desktopToolFolder(), QStringLiteral("/srv/grim"));
        qputenv("HYPRSHOT_DIR", "/srv/hyprshot");
        QCOMPARE(m_preferences->desktopToolFolder(), QStringLiteral("/srv/hyprshot"));
        qputenv("XDG_SCREENSHOTS_DIR", "/srv/shots/");
        QCOMPARE(m_preferences->desktopToolFolder(), QStringLiteral("/srv/shots"));
    }

    void aFolderMayHoldTheDate()
    {
        const QDate today = QDate::currentDate();
        qputenv("XDG_CURRENT_DESKTOP", "i3");
        QVERIFY(writeFile(configPath(QStringLiteral("ksnip/ksnip.conf")),
                          "[Application]\nSaveDirectory=/srv/$Y/$M-$D\n"));
        QCOMPARE(m_preferences->desktopToolFolder(),
                 today.toString(QStringLiteral("'/srv/'yyyy/MM-dd")));
        qputenv("XDG_CURRENT_DESKTOP", "niri");
        QVERIFY(writeFile(configPath(QStringLiteral("niri/config.kdl")),
                          "screenshot-path \"/srv/%Y/%m/%d.png\"\n"));
        QCOMPARE(m_preferences->desktopToolFolder(),
                 today.toString(QStringLiteral("'/srv/'yyyy/MM")));
    }

    void aFolderInThePatternOfNamesIsThatOfToday()
    {
        const auto folderWith = [this](const char *settings) {
            writeFile(configPath(QStringLiteral("spectaclerc")), settings);
            return m_preferences->desktopToolFolder();
        };
        const QDate today = QDate::currentDate();
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        QCOMPARE(folderWith("[ImageSave]\nimageSaveLocation=file:///srv/\n"
                            "imageFilenameTemplate=<yyyy>/<MM>/Shot_<yyyy><MM><dd>_<HH><mm>\n"),
                 today.toString(QStringLiteral("'/srv/'yyyy/MM")));
        QCOMPARE(folderWith("[Save]\ndefaultSaveLocation=file:///srv/\n"
                            "saveFilenameFormat=%Y-%M/%D/Shot_%H%m%S\n"),
                 today.toString(QStringLiteral("'/srv/'yyyy-MM/dd")));
        for (const char *settings :
             {"[ImageSave]\nimageSaveLocation=file:///srv/\nimageFilenameTemplate=<title>/<MM>\n",
              "[ImageSave]\nimageSaveLocation=file:///srv/\nimageFilenameTemplate=Shot_<yyyy>\n",
              "[Save]\ndefaultSaveLocation=file:///srv/\nsaveFilenameFormat=%T/Shot_%Y\n"})
            QCOMPARE(folderWith(settings), QStringLiteral("/srv"));
    }

    void aSandboxedToolKeepsItsSettingsElsewhere()
    {
        qputenv("XDG_CURRENT_DESKTOP", "i3");
        const QString file = inHome(
            QStringLiteral(".var/app/org.flameshot.Flameshot/config/flameshot/flameshot.ini"));
        QVERIFY(writeFile(file, "[General]\nsavePath=/srv/shots\n"));
        QCOMPARE(m_preferences->desktopToolFolder(), QStringLiteral("/srv/shots"));
        QVERIFY(QFile::remove(file));
    }

    void aLocationGoesToTheToolsThatTheUserHasGivenAFolder()
    {
        qputenv("XDG_CURRENT_DESKTOP", "LXQt");
        const QString flameshot = configPath(QStringLiteral("flameshot/flameshot.ini"));
        const QString screengrab = configPath(QStringLiteral("screengrab/screengrab.conf"));
        QVERIFY(writeFile(flameshot, "[General]\n# mine\nsavePath=/old\nuiColor=#740096\n"));
        QVERIFY(writeFile(screengrab, "[Base]\nzoomArea=false\n"));
        QVERIFY(m_preferences->storeLocation(QStringLiteral("/srv/ü, 1")).isEmpty());
        QCOMPARE(m_preferences->desktopToolFolder(), QStringLiteral("/srv/ü, 1"));
        QVERIFY(readFile(flameshot).startsWith("[General]\n# mine\nsavePath="));
        QVERIFY(readFile(flameshot).endsWith("\nuiColor=#740096\n"));
        QCOMPARE(QSettings(flameshot, QSettings::IniFormat).value(QStringLiteral("savePath")),
                 QStringLiteral("/srv/ü, 1"));
        // This one asks; it has no folder that could be wrong.
        QCOMPARE(readFile(screengrab), QByteArray("[Base]\nzoomArea=false\n"));
        QVERIFY(!QFileInfo::exists(configPath(QStringLiteral("ksnip"))));

        QVERIFY(m_preferences->storeShowsThumbnail(false).isEmpty());
        QVERIFY(readFile(flameshot).endsWith("\nuiColor=#740096\nsaveAfterCopy=true\n"));
    }

    void whetherTheKeyFollowsIsKnown()
    {
        for (const char *desktop : {"GNOME", "ubuntu:GNOME", "COSMIC", "niri"}) {
            qputenv("XDG_CURRENT_DESKTOP", desktop);
            QVERIFY2(m_preferences->keyHasFixedFolder(), desktop);
        }
        for (const char *desktop : {"KDE", "XFCE", "MATE", "X-Cinnamon", "sway", "LXQt", ""}) {
            qputenv("XDG_CURRENT_DESKTOP", desktop);
            QVERIFY2(!m_preferences->keyHasFixedFolder(), desktop);
        }
    }

    void aLinkToTheHomeIsTheHome()
    {
        QTemporaryDir aside;
        QVERIFY(QFile::link(QDir::homePath(), aside.filePath(QStringLiteral("link"))));
        qputenv("XDG_CURRENT_DESKTOP", "sway");
        qputenv("XDG_SCREENSHOTS_DIR", QFile::encodeName(aside.filePath(QStringLiteral("link"))));
        QVERIFY(!m_preferences->desktopToolFolder());
    }

    void aLocationGoesToXfcesOwnFileAndLeavesTheRestOfIt()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        const QString file = configPath(QStringLiteral("xfce4/xfce4-screenshooter"));
        QVERIFY(m_preferences->storeLocation(QStringLiteral("/srv/a b")).isEmpty());
        QCOMPARE(readFile(file), QByteArray("screenshot_dir=file:///srv/a%20b\n"));
        QVERIFY(writeFile(file, "app=none\nscreenshot_dir=file:/old\n\xff=1\n[Group]\n"
                                "screenshot_dir=kept"));
        QVERIFY(m_preferences->storeLocation(QStringLiteral("/srv/new")).isEmpty());
        QCOMPARE(readFile(file), QByteArray("app=none\nscreenshot_dir=file:///srv/new\n\xff=1\n"
                                            "[Group]\nscreenshot_dir=kept\n"));
        QCOMPARE(m_preferences->desktopToolFolder(), QStringLiteral("/srv/new"));
        QCOMPARE(m_preferences->location(), QStringLiteral("/srv/new"));
    }

    void aLocationGoesToTheUsersFoldersWhereGrimLooks()
    {
        qputenv("XDG_CURRENT_DESKTOP", "sway");
        const QString file = configPath(QStringLiteral("user-dirs.dirs"));
        QVERIFY(writeFile(file, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n"));
        const QString path = QStringLiteral("/srv/$(false) \"a\" `b` \\n é");
        QVERIFY(m_preferences->storeLocation(path).isEmpty());
        QCOMPARE(m_preferences->desktopToolFolder(), path);
        QVERIFY(readFile(file).startsWith("XDG_PICTURES_DIR=\"$HOME/Pictures\"\n"));

        QProcess shell;
        shell.start(QStringLiteral("/bin/sh"),
                    {QStringLiteral("-c"),
                     QStringLiteral(". \"$0\"; printf %s \"$XDG_SCREENSHOTS_DIR\""), file});
        QVERIFY(shell.waitForFinished());
        QCOMPARE(QString::fromUtf8(shell.readAllStandardOutput()), path);

        const QByteArray before = readFile(file);
        QVERIFY(m_preferences->storeLocation(QStringLiteral("/srv/two\nlines")).isEmpty());
        QCOMPARE(readFile(file), before);
    }

    void whatStandsInThePlaceOfAToolsFileIsLeftAlone()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        const QString file = configPath(QStringLiteral("xfce4/xfce4-screenshooter"));
        QVERIFY(QDir().mkpath(file + QStringLiteral("/inside")));
        QVERIFY(m_preferences->storeLocation(QStringLiteral("/srv/shots")).isEmpty());
        QVERIFY(QFileInfo(file + QStringLiteral("/inside")).isDir());
        QCOMPARE(m_preferences->location(), QStringLiteral("/srv/shots"));
    }

    void spectacleIsToldByKdesTool_data()
    {
        QTest::addColumn<QByteArray>("session");
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QString>("group");
        QTest::addColumn<QString>("key");
        QTest::newRow("Plasma 6") << QByteArray("6") << QStringLiteral("kwriteconfig6")
                                  << QStringLiteral("ImageSave")
                                  << QStringLiteral("imageSaveLocation");
        QTest::newRow("Plasma 5") << QByteArray("5") << QStringLiteral("kwriteconfig5")
                                  << QStringLiteral("Save")
                                  << QStringLiteral("defaultSaveLocation");
    }

    void spectacleIsToldByKdesTool()
    {
        QFETCH(QByteArray, session);
        QFETCH(QString, tool);
        QFETCH(QString, group);
        QFETCH(QString, key);
        const QTemporaryDir folder;
        const QString path = onlyTool(folder, tool);
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        qputenv("KDE_SESSION_VERSION", session);
        const QStringList start = {QStringLiteral("--file"), QStringLiteral("spectaclerc"),
                                   QStringLiteral("--group")};
        const SystemCommand folderCommand = {
            path, start + QStringList{group, QStringLiteral("--key"), key,
                                      QStringLiteral("file:///srv/my%20shots/")}};
        QCOMPARE(m_preferences->storeLocation(QStringLiteral("/srv/my shots")),
                 QList<SystemCommand>{folderCommand});
        const SystemCommand saveCommand = {
            path, start + QStringList{QStringLiteral("General"), QStringLiteral("--key"),
                                      QStringLiteral("autoSaveImage"), QStringLiteral("true")}};
        QCOMPARE(m_preferences->storeShowsThumbnail(false), QList<SystemCommand>{saveCommand});
        QCOMPARE(m_preferences->storeShowsThumbnail(true), QList<SystemCommand>());
    }

    void withoutKdesToolNothingIsRun()
    {
        const QTemporaryDir folder;
        qputenv("PATH", QFile::encodeName(folder.path()));
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        QCOMPARE(m_preferences->storeLocation(QStringLiteral("/srv/shots")),
                 QList<SystemCommand>());
        QCOMPARE(m_preferences->storeShowsThumbnail(false), QList<SystemCommand>());
        QCOMPARE(m_preferences->location(), QStringLiteral("/srv/shots"));
    }

    void aLinkedFileOfAToolStaysALink()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        const QString real = configPath(QStringLiteral("dotfiles/screenshooter"));
        const QString link = configPath(QStringLiteral("xfce4/xfce4-screenshooter"));
        QVERIFY(writeFile(real, "delay=1\n"));
        QVERIFY(QDir().mkpath(configPath(QStringLiteral("xfce4"))));
        QVERIFY(QFile::link(real, link));
        QVERIFY(m_preferences->storeLocation(QStringLiteral("/srv/shots")).isEmpty());
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(readFile(real), QByteArray("delay=1\nscreenshot_dir=file:///srv/shots\n"));
    }

    void aToolsSettingThatNamesNoFolderIsNoAnswer()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        QTemporaryDir directory;
        const QString picture = directory.filePath(QStringLiteral("shot.png"));
        QVERIFY(writeFile(picture, "picture"));
        const QString file = configPath(QStringLiteral("xfce4/xfce4-screenshooter"));
        const auto name = [&file](const QString &path) {
            return writeFile(file, "screenshot_dir=file:" + QFile::encodeName(path) + "\n");
        };
        // A tool whose settings never named a folder saves to its default folder.
        QVERIFY(writeFile(configPath(QStringLiteral("user-dirs.dirs")),
                          "XDG_PICTURES_DIR=\"/srv/pictures\"\n"));
        QVERIFY(name(picture));
        QCOMPARE(m_preferences->desktopToolFolder(), QStringLiteral("/srv/pictures"));

        QVERIFY(name(directory.path()));
        QCOMPARE(m_preferences->desktopToolFolder(), directory.path());
        for (const QString &none : {picture, QDir::homePath(), QStringLiteral("//server/x")}) {
            QVERIFY(name(none));
            QCOMPARE(m_preferences->desktopToolFolder(), directory.path());
        }
    }

    void changesOfTheFilesAreTold_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("file");
        QTest::newRow("the domain")
            << QByteArray("none") << QStringLiteral("velmora/com.apple.screencapture.conf");
        QTest::newRow("the user's folders")
            << QByteArray("none") << QStringLiteral("user-dirs.dirs");
        QTest::newRow("Xfce") << QByteArray("XFCE") << QStringLiteral("xfce4/xfce4-screenshooter");
        QTest::newRow("Spectacle") << QByteArray("KDE") << QStringLiteral("spectaclerc");
        QTest::newRow("Flameshot") << QByteArray("i3") << QStringLiteral("flameshot/flameshot.ini");
        QTest::newRow("ksnip") << QByteArray("i3") << QStringLiteral("ksnip/ksnip.conf");
        QTest::newRow("screengrab")
            << QByteArray("LXQt") << QStringLiteral("screengrab/screengrab.conf");
        QTest::newRow("niri") << QByteArray("niri") << QStringLiteral("niri/config.kdl");
    }

    void changesOfTheFilesAreTold()
    {
        QFETCH(QByteArray, desktop);
        QFETCH(QString, file);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const QString path = configPath(file);
        const QSignalSpy changes(m_preferences.get(), &ScreenshotPreferences::changed);
        // As a receiver of the signal does.
        connect(m_preferences.get(), &ScreenshotPreferences::changed, m_preferences.get(),
                [this] { m_preferences->follow(); });
        m_preferences->follow();
        const auto isTold = [&changes](const auto &act) {
            const qsizetype before = changes.size();
            return act() && QTest::qWaitFor([&] { return changes.size() > before; });
        };
        const auto settles = [&changes] {
            return Waiting::settles([&] { return changes.size(); }, 50ms);
        };
        QVERIFY(isTold([&] { return writeFile(path, "made"); }));
        QVERIFY(settles());
        QVERIFY(isTold([&] { return writeFile(path, "written again"); }));
        QVERIFY(settles());
        QVERIFY(isTold([&] {
            return writeFile(path + u'~', "put in its place") &&
                   ::rename(QFile::encodeName(QString(path + u'~')).constData(),
                            QFile::encodeName(path).constData()) == 0;
        }));
        QVERIFY(settles());
        QVERIFY(isTold([&] { return QFile::remove(path); }));
        QVERIFY(settles());
        const qsizetype before = changes.size();
        QVERIFY(writeFile(path + QStringLiteral(".other"), "nobody cares"));
        QVERIFY(Waiting::staysTrue([&] { return changes.size() == before; }, 100ms));
    }

    void whatKdesToolWritesIsReadBack()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        const QString path = QStringLiteral("/srv/my shots, ü $HOME \\n");
        const QList<SystemCommand> commands = m_preferences->storeLocation(path);
        if (commands.isEmpty())
            QSKIP("kwriteconfig is not installed");
        for (const SystemCommand &command : commands)
            QCOMPARE(QProcess::execute(command.executable, command.arguments), 0);
        QCOMPARE(m_preferences->desktopToolFolder(), path);
    }

private:
    QByteArray m_path;
    std::unique_ptr<ScreenshotPreferences> m_preferences;
};

VELMORA_EVENTS_TEST(ScreenshotPreferencesTest)
#include "ScreenshotPreferencesTest.moc"
