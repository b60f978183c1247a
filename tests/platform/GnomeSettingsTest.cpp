// SPDX-License-Identifier: MIT
#include "platform/ScreenshotPreferences.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr std::pair<const char *, const char *> settings[] = {
    {"org.gnome.gnome-screenshot", "auto-save-directory"},
    {"org.mate.screenshot", "last-save-directory"},
    {"io.elementary.screenshot", "folder-dir"},
};

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace

/// Desktops whose tool keeps its folder in GSettings.
class GnomeSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A process looks for schemas only once. The settings themselves are kept by dconf, as on
    /// desktops.
    void initTestCase()
    {
        QByteArray xml = "<schemalist>";
        for (const auto &[schema, key] : settings) {
            xml += QByteArray("<schema id='") + schema + "' path='/" + key + "/'><key name='" +
                   key + "' type='s'><default>''</default></key></schema>";
        }
        QVERIFY(writeFile(m_schemas.filePath(u"test.gschema.xml"_s), xml + "</schemalist>"));
        QCOMPARE(QProcess::execute(u"glib-compile-schemas"_s, {m_schemas.path()}), 0);
        qputenv("GSETTINGS_SCHEMA_DIR", QFile::encodeName(m_schemas.path()));
    }

    void theFolderIsReadAndFollowed_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("schema");
        QTest::addColumn<QString>("key");
        QTest::newRow("Cinnamon") << QByteArray("X-Cinnamon")
                                  << QString::fromLatin1(settings[0].first)
                                  << QString::fromLatin1(settings[0].second);
        QTest::newRow("elementary")
            << QByteArray("Pantheon") << QString::fromLatin1(settings[2].first)
            << QString::fromLatin1(settings[2].second);
        QTest::newRow("MATE") << QByteArray("MATE") << QString::fromLatin1(settings[1].first)
                              << QString::fromLatin1(settings[1].second);
    }

    void theFolderIsReadAndFollowed()
    {
        QFETCH(QByteArray, desktop);
        QFETCH(QString, schema);
        QFETCH(QString, key);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const auto preferences = makeScreenshotPreferences();
        QVERIFY(preferences->desktopToolFolder() != u"/srv/it's"_s);
        const QSignalSpy changes(preferences.get(), &ScreenshotPreferences::changed);

        const QString path = u"/srv/my 'shots' \\ \"ü\", 100%"_s;
        const QList<SystemCommand> commands = preferences->storeLocation(path);
        QCOMPARE(commands.size(), 1);
        QCOMPARE(QProcess::execute(commands[0].executable, commands[0].arguments), 0);
        QTRY_COMPARE(preferences->desktopToolFolder(), path);
        QTRY_VERIFY(changes.size() > 0);

        QCOMPARE(set(schema, key, u"/srv/it's"_s), 0);
        QTRY_COMPARE(preferences->desktopToolFolder(), u"/srv/it's"_s);
        QCOMPARE(makeScreenshotPreferences()->desktopToolFolder(), u"/srv/it's"_s);
        // A folder on a server is not on this machine: the previous one stays.
        const qsizetype before = changes.size();
        QCOMPARE(set(schema, key, u"sftp://server/x"_s), 0);
        QTRY_VERIFY(changes.size() > before);
        QCOMPARE(preferences->desktopToolFolder(), u"/srv/it's"_s);
        QVERIFY(makeScreenshotPreferences()->desktopToolFolder() != u"/srv/it's"_s);
    }

    /// GNOME Shell creates a folder with its first screenshot; before that, the older tool may be
    /// in use.
    void gnomesOlderToolCountsUntilTheShellHasItsFolder()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        const QString shells = QDir::homePath() + u"/Pictures/Screenshots"_s;
        QVERIFY(QDir().mkpath(QDir::homePath() + u"/Pictures"_s));
        QVERIFY(writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/user-dirs.dirs"_s,
                          "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n"));
        QCOMPARE(set(settings[0].first, settings[0].second, QString()), 0);
        const auto preferences = makeScreenshotPreferences();
        preferences->follow();
        const QSignalSpy changes(preferences.get(), &ScreenshotPreferences::changed);
        QCOMPARE(preferences->desktopToolFolder(), QDir::homePath() + u"/Pictures"_s);
        QCOMPARE(set(settings[0].first, settings[0].second, u"/srv/mine"_s), 0);
        QTRY_COMPARE(preferences->desktopToolFolder(), u"/srv/mine"_s);
        QVERIFY(Waiting::settles([&] { return changes.size(); }, 100ms));

        const qsizetype before = changes.size();
        QVERIFY(QDir().mkpath(shells));
        QTRY_VERIFY(changes.size() > before);
        QCOMPARE(preferences->desktopToolFolder(), shells);
        QVERIFY(QDir(shells).removeRecursively());
    }

    void noProgramIsStartedToRead()
    {
        const QTemporaryDir tools;
        const QString marker = tools.filePath(u"started"_s);
        QVERIFY(writeFile(tools.filePath(u"gsettings"_s),
                          "#!/bin/sh\necho >>'" + QFile::encodeName(marker) + "'\n"));
        QVERIFY(QFile::setPermissions(tools.filePath(u"gsettings"_s),
                                      QFile::ReadOwner | QFile::ExeOwner));
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(tools.path()) + ':' + path);
        qputenv("XDG_CURRENT_DESKTOP", "MATE");
        QVERIFY(makeScreenshotPreferences()->desktopToolFolder() != u"/nowhere"_s);
        qputenv("PATH", path);
        QVERIFY(!QFile::exists(marker));
    }

private:
    static int set(const char *schema, const char *key, const QString &value)
    {
        return set(QString::fromLatin1(schema), QString::fromLatin1(key), value);
    }
    static int set(const QString &schema, const QString &key, const QString &value)
    {
        return QProcess::execute(u"gsettings"_s, {u"set"_s, schema, key, value});
    }

    QTemporaryDir m_schemas;
};

VELMORA_EVENTS_TEST(GnomeSettingsTest)
#include "GnomeSettingsTest.moc"
