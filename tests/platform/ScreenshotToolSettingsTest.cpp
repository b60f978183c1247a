// SPDX-License-Identifier: MIT
#include "tests/platform/ScreenshotPreferencesFixture.h"
#include "tests/world/TestProgram.h"

#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{

/// An executable file of that name in its own folder, the only one that is searched.
QString onlyTool(const QTemporaryDir &folder, const QString &name)
{
    const QString path = folder.filePath(name);
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write("#!/bin/sh\n") < 0 ||
        !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        return {};
    qputenv("PATH", QFile::encodeName(folder.path()));
    return path;
}

} // namespace

/// What is written to the settings of the desktop's own screenshot tool.
class ScreenshotToolSettingsTest : public QObject, ScreenshotPreferencesFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void aLocationGoesToTheToolsThatTheUserHasGivenAFolder()
    {
        qputenv("XDG_CURRENT_DESKTOP", "LXQt");
        const QString flameshot = configPath(u"flameshot/flameshot.ini"_s);
        const QString screengrab = configPath(u"screengrab/screengrab.conf"_s);
        QVERIFY(writeFile(flameshot, "[General]\n# mine\nsavePath=/old\nuiColor=#740096\n"));
        QVERIFY(writeFile(screengrab, "[Base]\nzoomArea=false\n"));
        QVERIFY(m_preferences->storeLocation(u"/srv/ü, 1"_s).isEmpty());
        QCOMPARE(m_preferences->desktopToolFolder(), u"/srv/ü, 1"_s);
        QVERIFY(readFile(flameshot).startsWith("[General]\n# mine\nsavePath="));
        QVERIFY(readFile(flameshot).endsWith("\nuiColor=#740096\n"));
        QCOMPARE(QSettings(flameshot, QSettings::IniFormat).value(u"savePath"_s), u"/srv/ü, 1"_s);
        // This one asks; it has no folder that could be wrong.
        QCOMPARE(readFile(screengrab), QByteArray("[Base]\nzoomArea=false\n"));
        QVERIFY(!QFileInfo::exists(configPath(u"ksnip"_s)));

        QVERIFY(m_preferences->storeShowsThumbnail(false).isEmpty());
        QVERIFY(readFile(flameshot).endsWith("\nuiColor=#740096\nsaveAfterCopy=true\n"));
    }

    void aLocationGoesToXfcesOwnFileAndLeavesTheRestOfIt()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        const QString file = configPath(u"xfce4/xfce4-screenshooter"_s);
        QVERIFY(m_preferences->storeLocation(u"/srv/a b"_s).isEmpty());
        QCOMPARE(readFile(file), QByteArray("screenshot_dir=file:///srv/a%20b\n"));
        QVERIFY(writeFile(file, "app=none\nscreenshot_dir=file:/old\n\xff=1\n[Group]\n"
                                "screenshot_dir=kept"));
        QVERIFY(m_preferences->storeLocation(u"/srv/new"_s).isEmpty());
        QCOMPARE(readFile(file), QByteArray("app=none\nscreenshot_dir=file:///srv/new\n\xff=1\n"
                                            "[Group]\nscreenshot_dir=kept\n"));
        QCOMPARE(m_preferences->desktopToolFolder(), u"/srv/new"_s);
        QCOMPARE(m_preferences->location(), u"/srv/new"_s);
    }

    void aLocationGoesToTheUsersFoldersWhereGrimLooks()
    {
        qputenv("XDG_CURRENT_DESKTOP", "sway");
        const QString file = configPath(u"user-dirs.dirs"_s);
        QVERIFY(writeFile(file, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n"));
        const QString path = u"/srv/$(false) \"a\" `b` \\n é"_s;
        QVERIFY(m_preferences->storeLocation(path).isEmpty());
        QCOMPARE(m_preferences->desktopToolFolder(), path);
        QVERIFY(readFile(file).startsWith("XDG_PICTURES_DIR=\"$HOME/Pictures\"\n"));

        QProcess shell;
        shell.start(u"/bin/sh"_s,
                    {u"-c"_s, u". \"$0\"; printf %s \"$XDG_SCREENSHOTS_DIR\""_s, file});
        QVERIFY(shell.waitForFinished());
        QCOMPARE(QString::fromUtf8(shell.readAllStandardOutput()), path);

        const QByteArray before = readFile(file);
        QVERIFY(m_preferences->storeLocation(u"/srv/two\nlines"_s).isEmpty());
        QCOMPARE(readFile(file), before);
    }

    void whatStandsInThePlaceOfAToolsFileIsLeftAlone()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        const QString file = configPath(u"xfce4/xfce4-screenshooter"_s);
        QVERIFY(QDir().mkpath(file + u"/inside"_s));
        QVERIFY(m_preferences->storeLocation(u"/srv/shots"_s).isEmpty());
        QVERIFY(QFileInfo(file + u"/inside"_s).isDir());
        QCOMPARE(m_preferences->location(), u"/srv/shots"_s);
    }

    void spectaclesSettingsAreWrittenByKdesTool_data()
    {
        QTest::addColumn<QByteArray>("session");
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QString>("group");
        QTest::addColumn<QString>("key");
        QTest::newRow("Plasma 6") << QByteArray("6") << u"kwriteconfig6"_s << u"ImageSave"_s
                                  << u"imageSaveLocation"_s;
        QTest::newRow("Plasma 5") << QByteArray("5") << u"kwriteconfig5"_s << u"Save"_s
                                  << u"defaultSaveLocation"_s;
    }

    void spectaclesSettingsAreWrittenByKdesTool()
    {
        QFETCH(QByteArray, session);
        QFETCH(QString, tool);
        QFETCH(QString, group);
        QFETCH(QString, key);
        const QTemporaryDir folder;
        const QString path = onlyTool(folder, tool);
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        qputenv("KDE_SESSION_VERSION", session);
        const QStringList start = {u"--file"_s, u"spectaclerc"_s, u"--group"_s};
        const SystemCommand folderCommand = {
            path, start + QStringList{group, u"--key"_s, key, u"file:///srv/my%20shots/"_s}};
        QCOMPARE(m_preferences->storeLocation(u"/srv/my shots"_s),
                 QList<SystemCommand>{folderCommand});
        const SystemCommand saveCommand = {
            path, start + QStringList{u"General"_s, u"--key"_s, u"autoSaveImage"_s, u"true"_s}};
        QCOMPARE(m_preferences->storeShowsThumbnail(false), QList<SystemCommand>{saveCommand});
        QCOMPARE(m_preferences->storeShowsThumbnail(true), QList<SystemCommand>());
    }

    void withoutKdesToolNothingIsRun()
    {
        const QTemporaryDir folder;
        qputenv("PATH", QFile::encodeName(folder.path()));
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        QCOMPARE(m_preferences->storeLocation(u"/srv/shots"_s), QList<SystemCommand>());
        QCOMPARE(m_preferences->storeShowsThumbnail(false), QList<SystemCommand>());
        QCOMPARE(m_preferences->location(), u"/srv/shots"_s);
    }

    void aLinkedFileOfAToolStaysALink()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        const QString real = configPath(u"dotfiles/screenshooter"_s);
        const QString link = configPath(u"xfce4/xfce4-screenshooter"_s);
        QVERIFY(writeFile(real, "delay=1\n"));
        QVERIFY(QDir().mkpath(configPath(u"xfce4"_s)));
        QVERIFY(QFile::link(real, link));
        QVERIFY(m_preferences->storeLocation(u"/srv/shots"_s).isEmpty());
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(readFile(real), QByteArray("delay=1\nscreenshot_dir=file:///srv/shots\n"));
    }

    void whatKdesToolWritesIsReadBack()
    {
        qputenv("XDG_CURRENT_DESKTOP", "KDE");
        const QString path = u"/srv/my shots, ü $HOME \\n"_s;
        const QList<SystemCommand> commands = m_preferences->storeLocation(path);
        if (commands.isEmpty())
            QSKIP("kwriteconfig is not installed");
        for (const SystemCommand &command : commands)
            QCOMPARE(QProcess::execute(command.executable, command.arguments), 0);
        QCOMPARE(m_preferences->desktopToolFolder(), path);
    }
};

VELMORA_EVENTS_TEST(ScreenshotToolSettingsTest)
#include "ScreenshotToolSettingsTest.moc"
