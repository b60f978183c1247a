// SPDX-License-Identifier: MIT
#include "files/renameScreenshot.h"

#include "filesystem/FileUrls.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QTest>

#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

using Outcome = ScreenshotRename::Outcome;

class RenameScreenshotTest : public QObject
{
    Q_OBJECT

    static QString s(const char *text) { return QString::fromUtf8(text); }

private Q_SLOTS:
    void aFreeNameIsTaken()
    {
        const TestFiles files;
        const QUrl shot = files.make(s("Shot.png"));
        const ScreenshotRename rename = renameScreenshot(shot, s("foo.png"));
        QVERIFY(rename.outcome == Outcome::Renamed);
        QCOMPARE(rename.result, (RenameResult{shot, files.url(s("foo.png"))}));
        QVERIFY(!rename.error);
        QVERIFY(!FileUrls::exists(shot));
        QCOMPARE(TestFiles::read(files.url(s("foo.png"))), QByteArray("Shot.png"));
    }

    void aTakenNameGetsACounter_data()
    {
        QTest::addColumn<QStringList>("taken");
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<QString>("got");
        QTest::newRow("once") << QStringList{s("Foo.png")} << s("Foo.png") << s("Foo-2.png");
        QTest::newRow("twice") << QStringList{s("Foo.png"), s("Foo-2.png")} << s("Foo.png")
                               << s("Foo-3.png");
        QTest::newRow("with a gap")
            << QStringList{s("Foo.png"), s("Foo-3.png")} << s("Foo.png") << s("Foo-2.png");
        QTest::newRow("without extension") << QStringList{s("Foo")} << s("Foo") << s("Foo-2");
        QTest::newRow("two dots") << QStringList{s("a.b.png")} << s("a.b.png") << s("a.b-2.png");
        QTest::newRow("by a counter")
            << QStringList{s("Foo-2.png")} << s("Foo-2.png") << s("Foo-2-2.png");
    }

    void aTakenNameGetsACounter()
    {
        QFETCH(QStringList, taken);
        QFETCH(QString, wanted);
        QFETCH(QString, got);
        const TestFiles files;
        for (const QString &name : taken)
            files.make(name);
        const QUrl shot = files.make(s("Shot.png"));
        const ScreenshotRename rename = renameScreenshot(shot, wanted);
        QVERIFY(rename.outcome == Outcome::Renamed);
        QCOMPARE(rename.result->newURL, files.url(got));
        QCOMPARE(TestFiles::read(files.url(got)), QByteArray("Shot.png"));
        for (const QString &name : taken)
            QCOMPARE(TestFiles::read(files.url(name)), name.toUtf8());
    }

    void itsOwnNameChangesNothing()
    {
        const TestFiles files;
        const QUrl shot = files.make(s("Shot.png"));
        const ScreenshotRename rename = renameScreenshot(shot, s("Shot.png"));
        QVERIFY(rename.outcome == Outcome::Unchanged);
        QVERIFY(!rename.result && !rename.error);
        QVERIFY(FileUrls::exists(shot));
    }

    void itsOwnNameWithACounterIsTakenToo()
    {
        const TestFiles files;
        files.make(s("Foo.png"));
        const QUrl shot = files.make(s("Foo-2.png"));
        const ScreenshotRename rename = renameScreenshot(shot, s("Foo.png"));
        QCOMPARE(rename.result->newURL, files.url(s("Foo-3.png")));
    }

    void aLinkToNothingIsNotReplaced()
    {
        const TestFiles files;
        const QUrl link = files.url(s("Foo.png"));
        QCOMPARE(::symlink("/nowhere/at/all", QFile::encodeName(link.toLocalFile()).constData()),
                 0);
        const QUrl shot = files.make(s("Shot.png"));
        const ScreenshotRename rename = renameScreenshot(shot, s("Foo.png"));
        QCOMPARE(rename.result->newURL, files.url(s("Foo-2.png")));
        QCOMPARE(QFile::symLinkTarget(link.toLocalFile()), s("/nowhere/at/all"));
    }

    void aVanishedFileFails()
    {
        const TestFiles files;
        const ScreenshotRename rename = renameScreenshot(files.url(s("gone.png")), s("foo.png"));
        QVERIFY(rename.outcome == Outcome::Failed);
        QVERIFY(rename.error == std::errc::no_such_file_or_directory);
        QVERIFY(!rename.result);
        QVERIFY(!FileUrls::exists(files.url(s("foo.png"))));
    }

    void aVanishedFileFailsAlsoWhereTheNameIsTaken()
    {
        const TestFiles files;
        files.make(s("foo.png"));
        const ScreenshotRename rename = renameScreenshot(files.url(s("gone.png")), s("foo.png"));
        QVERIFY(rename.outcome == Outcome::Failed);
        QCOMPARE(TestFiles::read(files.url(s("foo.png"))), QByteArray("foo.png"));
        QCOMPARE(QDir(files.folder().toLocalFile()).entryList(QDir::Files),
                 QStringList{s("foo.png")});
    }

    void aNameThatTheFileSystemCantHoldFails()
    {
        const TestFiles files;
        const QUrl shot = files.make(s("Shot.png"));
        const ScreenshotRename rename = renameScreenshot(shot, QString(300, u'x'));
        QVERIFY(rename.outcome == Outcome::Failed);
        QVERIFY(rename.error == std::errc::filename_too_long);
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
    }

    void manyWhoWantOneNameAtOnceAllGetTheirOwn()
    {
        constexpr int count = 8;
        const TestFiles files;
        std::vector<QUrl> shots;
        for (int i = 0; i < count; ++i)
            shots.push_back(files.make(QString::number(i) + s(".png")));
        std::vector<ScreenshotRename> renames(count);
        {
            std::vector<std::jthread> threads;
            for (size_t i = 0; i < count; ++i)
                threads.emplace_back([&renames, &shots, i] {
                    renames[i] = renameScreenshot(shots[i], u"same.png"_s);
                });
        }
        for (size_t i = 0; i < count; ++i) {
            QVERIFY(renames[i].outcome == Outcome::Renamed);
            QCOMPARE(TestFiles::read(renames[i].result->newURL),
                     QString(QString::number(i) + s(".png")).toUtf8());
        }
        QCOMPARE(QDir(files.folder().toLocalFile()).entryList(QDir::Files).size(), count);
    }
};

VELMORA_EVENTS_TEST(RenameScreenshotTest)
#include "RenameScreenshotTest.moc"
