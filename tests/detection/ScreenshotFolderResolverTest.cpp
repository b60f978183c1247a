// SPDX-License-Identifier: MIT
#include "detection/ScreenshotFolderResolver.h"

#include "filesystem/FileUrls.h"
#include "tests/detection/FolderActions.h"
#include "tests/detection/RememberedPreferences.h"
#include "tests/files/LogTail.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using FolderActions::setDate;
using FolderActions::write;

namespace
{

QUrl inHome(const char *path)
{
    return QUrl::fromLocalFile(QDir::homePath() + QLatin1String(path));
}

QStringList namesOf(const QList<QUrl> &urls)
{
    QStringList names;
    for (const QUrl &url : urls)
        names.append(FileUrls::lastPathComponent(url));
    return names;
}

} // namespace

class ScreenshotFolderResolverTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_directory = std::make_unique<QTemporaryDir>(); }

    void theStoredLocationIsTheFolder_data()
    {
        QTest::addColumn<QString>("location");
        QTest::addColumn<QUrl>("folder");
        QTest::newRow("a path") << u"/srv/shots"_s << QUrl::fromLocalFile(u"/srv/shots"_s);
        QTest::newRow("a tilde") << u"~/Pictures/Shots"_s << inHome("/Pictures/Shots");
        QTest::newRow("the home") << u"~"_s << inHome("");
        QTest::newRow("a slash too many") << u"~/Shots//"_s << inHome("/Shots");
        QTest::newRow("another user") << u"~root/Shots"_s << QUrl::fromLocalFile(u"/root/Shots"_s);
        QTest::newRow("a tilde inside") << u"/srv/~/a~b"_s << QUrl::fromLocalFile(u"/srv/~/a~b"_s);
        QTest::newRow("no such user")
            << u"~nobody-of-that-name/Shots"_s
            << QUrl::fromLocalFile(QDir::currentPath() + u"/~nobody-of-that-name/Shots"_s);
        QTest::newRow("what a URL would escape")
            << u"/srv/50% #1?"_s << QUrl::fromLocalFile(u"/srv/50% #1?"_s);
        QTest::newRow("nothing") << QString() << inHome("/Desktop");
    }

    void theStoredLocationIsTheFolder()
    {
        QFETCH(QString, location);
        QFETCH(QUrl, folder);
        RememberedPreferences preferences;
        preferences.storedLocation = location;
        QCOMPARE(ScreenshotFolderResolver::currentScreenshotFolder(preferences), folder);
    }

    void withoutALocationTheDesktopsToolTellsTheFolder()
    {
        RememberedPreferences preferences;
        QCOMPARE(ScreenshotFolderResolver::currentScreenshotFolder(preferences),
                 inHome("/Desktop"));
        preferences.toolFolder = u"/srv/tool"_s;
        QCOMPARE(ScreenshotFolderResolver::currentScreenshotFolder(preferences),
                 QUrl::fromLocalFile(u"/srv/tool"_s));
        preferences.storedLocation = u"/srv/stored"_s;
        QCOMPARE(ScreenshotFolderResolver::currentScreenshotFolder(preferences),
                 QUrl::fromLocalFile(u"/srv/stored"_s));
    }

    void aFolderIsLoggedStoredAndSetByCommands()
    {
        RememberedPreferences preferences;
        const QString marker = m_directory->filePath(u"told"_s);
        preferences.commands = {{u"/bin/sh"_s, {u"-c"_s, u"printf 1 >> \"$0\""_s, marker}},
                                {u"/bin/sh"_s, {u"-c"_s, u"printf 2 >> \"$0\"; exit 3"_s, marker}}};
        const LogTail log;
        const QString folder = m_directory->filePath(u"a new folder"_s);
        ScreenshotFolderResolver::setScreenshotFolder(preferences,
                                                      QUrl::fromLocalFile(folder + u'/'));
        QCOMPARE(preferences.storedLocation, folder);
        QFile seen(marker);
        QVERIFY(seen.open(QIODevice::ReadOnly));
        QCOMPARE(seen.readAll(), QByteArray("12"));
        const QString message = u"set screenshot folder "_s + folder;
        QCOMPARE(log.messagesWith(folder), QStringList(message));
    }

    void whatIsNoLocalFolderIsNotStored()
    {
        RememberedPreferences preferences;
        ScreenshotFolderResolver::setScreenshotFolder(preferences, QUrl(u"smb://server/share"_s));
        QVERIFY(!preferences.storedLocation);
    }

    void imagesOfAFolderAreKnownByTheirExtension()
    {
        for (const char *name : {"a.PNG", "b.tif", "c.gif", ".hidden.png", "e.jpeg", "f.png.part",
                                 "png", "g.HEIC", "h.", "i.jpg", "j.TiFf"})
            QVERIFY(write(path(name)));
        QVERIFY(QDir().mkdir(path("d.png")));
        QStringList names = namesOf(recent(100));
        names.sort();
        QCOMPARE(names.join(u' '), u"a.PNG b.tif d.png e.jpeg g.HEIC i.jpg j.TiFf"_s);
    }

    void theNewestComeFirst()
    {
        const FileTime now = FileTimes::now();
        QVERIFY(write(path("old.png")) && setDate(path("old.png"), now - 1h));
        QVERIFY(write(path("newest.png")) && setDate(path("newest.png"), now + 1h));
        QVERIFY(write(path("new.png")) && setDate(path("new.png"), now));
        QVERIFY(write(path("newer.png")) && setDate(path("newer.png"), now + 1ns));
        QCOMPARE(namesOf(recent(100)).join(u' '), u"newest.png newer.png new.png old.png"_s);
        QCOMPARE(namesOf(recent(2)).join(u' '), u"newest.png newer.png"_s);
        QCOMPARE(recent(1), QList<QUrl>{QUrl::fromLocalFile(path("newest.png"))});
        QCOMPARE(recent(0), QList<QUrl>());
        QCOMPARE(recent(-1), QList<QUrl>());
    }

    void filesOfOneDateKeepTheOrderOfTheListing()
    {
        const FileTime date = FileTimes::now() - 1min;
        for (int i = 0; i < 50; ++i) {
            const QString file = m_directory->filePath(u"%1.png"_s.arg(i * 7919 % 50));
            QVERIFY(write(file) && setDate(file, date));
        }
        QStringList listed;
        QDirIterator iterator(m_directory->path(), QDir::Files);
        while (iterator.hasNext())
            listed.append(iterator.nextFileInfo().fileName());
        QCOMPARE(namesOf(recent(100)), listed);
    }

    void aFolderThatCantBeListedHoldsNoImages()
    {
        QCOMPARE(ScreenshotFolderResolver::recentScreenshotFiles(
                     QUrl::fromLocalFile(path("missing")), 10),
                 QList<QUrl>());
        QVERIFY(write(path("file")));
        QCOMPARE(
            ScreenshotFolderResolver::recentScreenshotFiles(QUrl::fromLocalFile(path("file")), 10),
            QList<QUrl>());
        QCOMPARE(ScreenshotFolderResolver::recentScreenshotFiles(QUrl(u"http://server/"_s), 10),
                 QList<QUrl>());
    }

    void aNameThatIsNotUtf8IsPassedOver()
    {
        QVERIFY(FolderActions::writeRaw(QFile::encodeName(m_directory->path()) + "/bad\xff.png"));
        QVERIFY(write(path("good 100%.png")));
        QCOMPARE(recent(10), QList<QUrl>{QUrl::fromLocalFile(path("good 100%.png"))});
    }

    void aDateThatCantBeReadIsTheDistantPast()
    {
        QCOMPARE(ScreenshotFolderResolver::modificationDate(QUrl::fromLocalFile(path("missing"))),
                 FileTimes::distantPast);
        QVERIFY(ScreenshotFolderResolver::modificationDate(QUrl::fromLocalFile(path(""))) >
                FileTimes::distantPast);
    }

    void aLinkHasItsOwnDate()
    {
        const FileTime date = FileTimes::now() - 1h;
        QVERIFY(write(path("target.png")));
        QVERIFY(FolderActions::symlink(path("target.png"), path("link.png")));
        QVERIFY(setDate(path("link.png"), date));
        QCOMPARE(ScreenshotFolderResolver::modificationDate(QUrl::fromLocalFile(path("link.png"))),
                 date);
    }

    void theDateIsExact()
    {
        const FileTime date(1234567890s + 123456789ns);
        QVERIFY(write(path("a.png")) && setDate(path("a.png"), date));
        QCOMPARE(ScreenshotFolderResolver::modificationDate(QUrl::fromLocalFile(path("a.png"))),
                 date);
    }

private:
    QString path(const char *name) const { return m_directory->filePath(QString::fromUtf8(name)); }
    QList<QUrl> recent(int limit) const
    {
        return ScreenshotFolderResolver::recentScreenshotFiles(
            QUrl::fromLocalFile(m_directory->path()), limit);
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

VELMORA_EVENTS_TEST(ScreenshotFolderResolverTest)
#include "ScreenshotFolderResolverTest.moc"
