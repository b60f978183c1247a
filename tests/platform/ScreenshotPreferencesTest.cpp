// SPDX-License-Identifier: MIT
#include "tests/platform/ScreenshotPreferencesFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What is stored in the domain, and which changes are reported.
class ScreenshotPreferencesTest : public QObject, ScreenshotPreferencesFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

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
        QVERIFY(m_preferences->storeLocation(u"/srv/shots"_s).isEmpty());
        QVERIFY(m_preferences->storeShowsThumbnail(false).isEmpty());
        const QString file = configPath(u"velmora/com.apple.screencapture.conf"_s);
        QTRY_COMPARE(readFile(file),
                     QByteArray("[General]\nlocation=/srv/shots\nshow-thumbnail=false\n"));
        QVERIFY(writeFile(file, "[General]\nlocation=/srv/other places\nshow-thumbnail=true\n"));
        QTRY_COMPARE(m_preferences->location(), u"/srv/other places"_s);
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
        const QString file = configPath(u"velmora/com.apple.screencapture.conf"_s);
        QVERIFY(writeFile(file, "[General]\nshow-thumbnail=false\n"));
        QVERIFY(writeFile(file + u".lock"_s, content));
        QElapsedTimer timer;
        timer.start();
        QVERIFY(m_preferences->storeLocation(u"/srv/shots"_s).isEmpty());
        QVERIFY(timer.elapsed() < 2000);
        QTRY_COMPARE(readFile(file),
                     QByteArray("[General]\nshow-thumbnail=false\nlocation=/srv/shots\n"));
        QCOMPARE(QDir(configPath(u"velmora"_s)).entryList(QDir::Files).size(), 2);
    }

    void aPipeInThePlaceOfAToolsFileHoldsNobodyUp()
    {
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        const QString file = configPath(u"xfce4/xfce4-screenshooter"_s);
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        for (const QString &pipe : {file, configPath(u"user-dirs.dirs"_s)})
            QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(!m_preferences->desktopToolFolder());
        QVERIFY(m_preferences->storeLocation(u"/srv/shots"_s).isEmpty());
    }

    void whatIsNoBooleanIsNoThumbnailSetting()
    {
        for (const char *value : {"", "1", "no", "True", "true, false"}) {
            QVERIFY(writeFile(configPath(u"velmora/com.apple.screencapture.conf"_s),
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

    void changesOfTheFilesAreReported_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("file");
        QTest::newRow("the domain")
            << QByteArray("none") << u"velmora/com.apple.screencapture.conf"_s;
        QTest::newRow("the user's folders") << QByteArray("none") << u"user-dirs.dirs"_s;
        QTest::newRow("Xfce") << QByteArray("XFCE") << u"xfce4/xfce4-screenshooter"_s;
        QTest::newRow("Spectacle") << QByteArray("KDE") << u"spectaclerc"_s;
        QTest::newRow("Flameshot") << QByteArray("i3") << u"flameshot/flameshot.ini"_s;
        QTest::newRow("ksnip") << QByteArray("i3") << u"ksnip/ksnip.conf"_s;
        QTest::newRow("screengrab") << QByteArray("LXQt") << u"screengrab/screengrab.conf"_s;
        QTest::newRow("niri") << QByteArray("niri") << u"niri/config.kdl"_s;
    }

    void changesOfTheFilesAreReported()
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
        const auto isReported = [&changes](const auto &act) {
            const qsizetype before = changes.size();
            return act() && QTest::qWaitFor([&] { return changes.size() > before; });
        };
        const auto settles = [&changes] {
            return Waiting::settles([&] { return changes.size(); }, 50ms);
        };
        QVERIFY(isReported([&] { return writeFile(path, "made"); }));
        QVERIFY(settles());
        QVERIFY(isReported([&] { return writeFile(path, "written again"); }));
        QVERIFY(settles());
        QVERIFY(isReported([&] {
            return writeFile(path + u'~', "put in its place") &&
                   ::rename(QFile::encodeName(QString(path + u'~')).constData(),
                            QFile::encodeName(path).constData()) == 0;
        }));
        QVERIFY(settles());
        QVERIFY(isReported([&] { return QFile::remove(path); }));
        QVERIFY(Waiting::settles([&] { return changes.size(); }, 500ms));
        const qsizetype before = changes.size();
        QVERIFY(writeFile(path + u".other"_s, "nobody cares"));
        QVERIFY(Waiting::staysTrue([&] { return changes.size() == before; }, 100ms));
    }
};

VELMORA_EVENTS_TEST(ScreenshotPreferencesTest)
#include "ScreenshotPreferencesTest.moc"
