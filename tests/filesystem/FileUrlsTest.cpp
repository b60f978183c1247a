// SPDX-License-Identifier: MIT
#include "filesystem/FileUrls.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class FileUrlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standardizedUrlsOfOnePlaceAreEqual_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << u"/home/ada/Desktop/shot.png"_s;
        QTest::newRow("dot") << u"/home/ada/./Desktop/shot.png"_s;
        QTest::newRow("dot dot") << u"/home/ada/Music/../Desktop/shot.png"_s;
        QTest::newRow("doubled slash") << u"/home/ada//Desktop/shot.png"_s;
        QTest::newRow("trailing slash") << u"/home/ada/Desktop/shot.png/"_s;
    }

    void standardizedUrlsOfOnePlaceAreEqual()
    {
        QFETCH(QString, path);
        const QUrl expected = QUrl::fromLocalFile(u"/home/ada/Desktop/shot.png"_s);
        QCOMPARE(FileUrls::fromPath(path), expected);
        QCOMPARE(FileUrls::standardized(QUrl::fromLocalFile(path)), expected);
    }

    void namesThatAUrlWouldEscapeKeepTheirCharacters()
    {
        for (const QString &name : {u"100% sure?.png"_s, u"a#b.png"_s, u"é ’.png"_s, u"%41.png"_s,
                                    u"back\\slash.png"_s}) {
            const QUrl url = FileUrls::child(QUrl::fromLocalFile(u"/home/ada"_s), name);
            QCOMPARE(url.toLocalFile(), u"/home/ada/"_s + name);
            QCOMPARE(FileUrls::lastPathComponent(url), name);
            QCOMPARE(FileUrls::standardized(url), url);
        }
    }

    void aSymbolicLinkIsNotResolved()
    {
        QTemporaryDir folder;
        const QUrl link = FileUrls::fromPath(folder.filePath(u"link"_s));
        QVERIFY(QFile::link(folder.path(), link.toLocalFile()));
        QCOMPARE(FileUrls::standardized(link), link);
    }

    void theParentOfAFolderDoesNotDependOnATrailingSlash()
    {
        const QUrl expected = FileUrls::fromPath(u"/home/ada"_s);
        QCOMPARE(FileUrls::parentFolder(QUrl::fromLocalFile(u"/home/ada/Desktop"_s)), expected);
        QCOMPARE(FileUrls::parentFolder(QUrl::fromLocalFile(u"/home/ada/Desktop/"_s)), expected);
    }

    void aChildOfTheRootHasOneSlash()
    {
        const QUrl root = FileUrls::fromPath(u"/"_s);
        QCOMPARE(FileUrls::child(root, u"shot.png"_s).toLocalFile(), u"/shot.png"_s);
        QVERIFY(FileUrls::lastPathComponent(root).isEmpty());
    }

    void theExtensionIsWhatFollowsTheLastDot_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("extension");
        const auto row = [](const char *path, const char *base, const char *extension) {
            QTest::newRow(path) << QString::fromUtf8(path) << QString::fromUtf8(base)
                                << QString::fromUtf8(extension);
        };
        row("shot.png", "shot", "png");
        row("Shot.PNG", "Shot", "PNG");
        row("/a.b/shot", "shot", "");
        row("/a/shot.png/", "shot", "png");
        row("archive.tar.gz", "archive.tar", "gz");
        row(".png", ".png", "");
        row("..png", ".", "png");
        row("shot.", "shot.", "");
        row("v1.2 final", "v1.2 final", "");
        row("Review v1.2 final.png", "Review v1.2 final", "png");
        row("", "", "");
    }

    void theExtensionIsWhatFollowsTheLastDot()
    {
        QFETCH(QString, path);
        QFETCH(QString, base);
        QFETCH(QString, extension);
        QCOMPARE(FileUrls::baseName(path), base);
        QCOMPARE(FileUrls::pathExtension(path), extension);
    }

    void aLinkToNothingDoesNotExist()
    {
        QTemporaryDir folder;
        const QUrl link = FileUrls::fromPath(folder.filePath(u"link.png"_s));
        QVERIFY(QFile::link(folder.filePath(u"nothing"_s), link.toLocalFile()));
        QVERIFY(!FileUrls::exists(link));
        QVERIFY(FileUrls::exists(FileUrls::fromPath(folder.path())));
    }

    void aNumberStandsBeforeTheExtension_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("numbered");
        QTest::newRow("ordinary") << u"Foo.png"_s << u"Foo-3.png"_s;
        QTest::newRow("without extension") << u"Foo"_s << u"Foo-3"_s;
        QTest::newRow("two dots") << u"a.b.png"_s << u"a.b-3.png"_s;
        QTest::newRow("numbered") << u"Foo-2.png"_s << u"Foo-2-3.png"_s;
    }

    void aNumberStandsBeforeTheExtension()
    {
        QFETCH(QString, name);
        QFETCH(QString, numbered);
        const QUrl parent = QUrl::fromLocalFile(u"/home/ada"_s);
        QCOMPARE(FileUrls::numbered(FileUrls::child(parent, name), 3),
                 FileUrls::child(parent, numbered));
    }
};

VELMORA_EVENTS_TEST(FileUrlsTest)
#include "FileUrlsTest.moc"
