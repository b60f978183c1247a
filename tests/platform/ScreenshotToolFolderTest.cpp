// SPDX-License-Identifier: MIT
#include "tests/platform/ScreenshotPreferencesFixture.h"
#include "tests/world/TestProgram.h"

#include <QDate>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

/// Where the desktop's own screenshot tool saves.
class ScreenshotToolFolderTest : public QObject, ScreenshotPreferencesFixture
{
    Q_OBJECT

private Q_SLOTS:
    /// So that no row depends on the tools of this machine: they bring a description of their
    /// settings.
    void initTestCase() { qputenv("XDG_DATA_DIRS", "/nowhere"); }

    void init() { begin(); }

    void theFolderOfTheDesktopsToolIsKnown_data()
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

    void theFolderOfTheDesktopsToolIsKnown()
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
        QCOMPARE(m_preferences->desktopToolFolder(), inHome(u"Pictures/Screenshots"_s));
    }

    void theEnvironmentSaysWhereGrimSaves()
    {
        qputenv("XDG_CURRENT_DESKTOP", "sway");
        qputenv("GRIM_DEFAULT_DIR", "/srv/grim");
        QCOMPARE(m_preferences->desktopToolFolder(), u"/srv/grim"_s);
        qputenv("HYPRSHOT_DIR", "/srv/hyprshot");
        QCOMPARE(m_preferences->desktopToolFolder(), u"/srv/hyprshot"_s);
        qputenv("XDG_SCREENSHOTS_DIR", "/srv/shots/");
        QCOMPARE(m_preferences->desktopToolFolder(), u"/srv/shots"_s);
    }

    void aFolderMayHoldTheDate()
    {
        const QDate today = QDate::currentDate();
        qputenv("XDG_CURRENT_DESKTOP", "i3");
        QVERIFY(writeFile(configPath(u"ksnip/ksnip.conf"_s),
                          "[Application]\nSaveDirectory=/srv/$Y/$M-$D\n"));
        QCOMPARE(m_preferences->desktopToolFolder(), today.toString(u"'/srv/'yyyy/MM-dd"_s));
        qputenv("XDG_CURRENT_DESKTOP", "niri");
        QVERIFY(
            writeFile(configPath(u"niri/config.kdl"_s), "screenshot-path \"/srv/%Y/%m/%d.png\"\n"));
        QCOMPARE(m_preferences->desktopToolFolder(), today.toString(u"'/srv/'yyyy/MM"_s));
    }

    /// A time zone in which the day ends in two seconds.
    void theFolderOfTheNextDayIsFollowed()
    {
        const qint64 secondOfDay = (QDateTime::currentSecsSinceEpoch() + 2) % (24 * 60 * 60);
        const QByteArray offset =
            QTime::fromMSecsSinceStartOfDay(int(secondOfDay) * 1000).toString().toLatin1();
        qputenv("TZ", "TEST" + offset);
        qputenv("XDG_CURRENT_DESKTOP", "i3");
        QVERIFY(writeFile(configPath(u"ksnip/ksnip.conf"_s),
                          "[Application]\nSaveDirectory=/srv/$Y-$M-$D\n"));
        const auto before = makeScreenshotPreferences();
        QSignalSpy changed(before.get(), &ScreenshotPreferences::changed);
        const std::optional<QString> today = before->desktopToolFolder();
        QVERIFY(QTest::qWaitFor([&changed] { return !changed.isEmpty(); }, 20'000));
        const std::optional<QString> tomorrow = before->desktopToolFolder();
        const auto date = [](const std::optional<QString> &folder) {
            return QDate::fromString(folder.value_or(QString()).section(u'/', -1), Qt::ISODate);
        };
        QVERIFY(date(today).isValid());
        QCOMPARE(date(tomorrow), date(today).addDays(1));
    }

    void aFolderInThePatternOfNamesIsThatOfToday()
    {
        const auto folderWith = [this](const char *settings) {
            writeFile(configPath(u"spectaclerc"_s), settings);
            return m_preferences->desktopToolFolder();
        };
        const QDate today = QDate::currentDate();
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        QCOMPARE(folderWith("[ImageSave]\nimageSaveLocation=file:///srv/\n"
                            "imageFilenameTemplate=<yyyy>/<MM>/Shot_<yyyy><MM><dd>_<HH><mm>\n"),
                 today.toString(u"'/srv/'yyyy/MM"_s));
        QCOMPARE(folderWith("[Save]\ndefaultSaveLocation=file:///srv/\n"
                            "saveFilenameFormat=%Y-%M/%D/Shot_%H%m%S\n"),
                 today.toString(u"'/srv/'yyyy-MM/dd"_s));
        for (const char *settings :
             {"[ImageSave]\nimageSaveLocation=file:///srv/\nimageFilenameTemplate=<title>/<MM>\n",
              "[ImageSave]\nimageSaveLocation=file:///srv/\nimageFilenameTemplate=Shot_<yyyy>\n",
              "[Save]\ndefaultSaveLocation=file:///srv/\nsaveFilenameFormat=%T/Shot_%Y\n"})
            QCOMPARE(folderWith(settings), u"/srv"_s);
    }

    void aSandboxedToolKeepsItsSettingsElsewhere()
    {
        qputenv("XDG_CURRENT_DESKTOP", "i3");
        const QString file =
            inHome(u".var/app/org.flameshot.Flameshot/config/flameshot/flameshot.ini"_s);
        QVERIFY(writeFile(file, "[General]\nsavePath=/srv/shots\n"));
        QCOMPARE(m_preferences->desktopToolFolder(), u"/srv/shots"_s);
        QVERIFY(QFile::remove(file));
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
        QVERIFY(QFile::link(QDir::homePath(), aside.filePath(u"link"_s)));
        qputenv("XDG_CURRENT_DESKTOP", "sway");
        qputenv("XDG_SCREENSHOTS_DIR", QFile::encodeName(aside.filePath(u"link"_s)));
        QVERIFY(!m_preferences->desktopToolFolder());
    }

    void aToolsSettingThatNamesNoFolderIsNoAnswer()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        QTemporaryDir directory;
        const QString picture = directory.filePath(u"shot.png"_s);
        QVERIFY(writeFile(picture, "picture"));
        const QString file = configPath(u"xfce4/xfce4-screenshooter"_s);
        const auto name = [&file](const QString &path) {
            return writeFile(file, "screenshot_dir=file:" + QFile::encodeName(path) + "\n");
        };
        // A tool whose settings never named a folder saves to its default folder.
        QVERIFY(writeFile(configPath(u"user-dirs.dirs"_s), "XDG_PICTURES_DIR=\"/srv/pictures\"\n"));
        QVERIFY(name(picture));
        QCOMPARE(m_preferences->desktopToolFolder(), u"/srv/pictures"_s);

        QVERIFY(name(directory.path()));
        QCOMPARE(m_preferences->desktopToolFolder(), directory.path());
        for (const QString &none : {picture, QDir::homePath(), u"//server/x"_s}) {
            QVERIFY(name(none));
            QCOMPARE(m_preferences->desktopToolFolder(), directory.path());
        }
    }
};

VELMORA_EVENTS_TEST(ScreenshotToolFolderTest)
#include "ScreenshotToolFolderTest.moc"
