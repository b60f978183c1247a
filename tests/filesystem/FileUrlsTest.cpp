// SPDX-License-Identifier: MIT
#include "filesystem/FileUrls.h"
#include "tests/world/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class FileUrlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standardizedUrlsOfOnePlaceAreEqual_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << QStringLiteral("/home/ada/Desktop/shot.png");
        QTest::newRow("dot") << QStringLiteral("/home/ada/./Desktop/shot.png");
        QTest::newRow("dot dot") << QStringLiteral("/home/ada/Music/../Desktop/shot.png");
        QTest::newRow("doubled slash") << QStringLiteral("/home/ada//Desktop/shot.png");
        QTest::newRow("trailing slash") << QStringLiteral("/home/ada/Desktop/shot.png/");
    }

    void standardizedUrlsOfOnePlaceAreEqual()
    {
        QFETCH(QString, path);
        const QUrl expected = QUrl::fromLocalFile(QStringLiteral("/home/ada/Desktop/shot.png"));
        QCOMPARE(FileUrls::fromPath(path), expected);
        QCOMPARE(FileUrls::standardized(QUrl::fromLocalFile(path)), expected);
    }

    void namesThatAUrlWouldEscapeKeepTheirCharacters()
    {
        for (const QString &name : {QStringLiteral("100% sure?.png"), QStringLiteral("a#b.png"),
                                    QStringLiteral("é ’.png"), QStringLiteral("%41.png"),
                                    QStringLiteral("back\\slash.png")}) {
            const QUrl url =
                FileUrls::child(QUrl::fromLocalFile(QStringLiteral("/home/ada")), name);
            QCOMPARE(url.toLocalFile(), QStringLiteral("/home/ada/") + name);
            QCOMPARE(FileUrls::lastPathComponent(url), name);
            QCOMPARE(FileUrls::standardized(url), url);
        }
    }

    void aSymbolicLinkIsNotResolved()
    {
        QTemporaryDir folder;
        const QUrl link = FileUrls::fromPath(folder.filePath(QStringLiteral("link")));
        QVERIFY(QFile::link(folder.path(), link.toLocalFile()));
        QCOMPARE(FileUrls::standardized(link), link);
    }

    void theParentOfAFolderDoesNotDependOnATrailingSlash()
    {
        const QUrl expected = FileUrls::fromPath(QStringLiteral("/home/ada"));
        QCOMPARE(FileUrls::parentFolder(QUrl::fromLocalFile(QStringLiteral("/home/ada/Desktop"))),
                 expected);
        QCOMPARE(FileUrls::parentFolder(QUrl::fromLocalFile(QStringLiteral("/home/ada/Desktop/"))),
                 expected);
    }

    void aChildOfTheRootHasOneSlash()
    {
        const QUrl root = FileUrls::fromPath(QStringLiteral("/"));
        QCOMPARE(FileUrls::child(root, QStringLiteral("shot.png")).toLocalFile(),
                 QStringLiteral("/shot.png"));
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
        const QUrl link = FileUrls::fromPath(folder.filePath(QStringLiteral("link.png")));
        QVERIFY(QFile::link(folder.filePath(QStringLiteral("nothing")), link.toLocalFile()));
        QVERIFY(!FileUrls::exists(link));
        QVERIFY(FileUrls::exists(FileUrls::fromPath(folder.path())));
    }

    void aNumberStandsBeforeTheExtension_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("numbered");
        QTest::newRow("ordinary") << QStringLiteral("Foo.png") << QStringLiteral("Foo-3.png");
        QTest::newRow("without extension") << QStringLiteral("Foo") << QStringLiteral("Foo-3");
        QTest::newRow("two dots") << QStringLiteral("a.b.png") << QStringLiteral("a.b-3.png");
        QTest::newRow("numbered") << QStringLiteral("Foo-2.png") << QStringLiteral("Foo-2-3.png");
    }

    void aNumberStandsBeforeTheExtension()
    {
        QFETCH(QString, name);
        QFETCH(QString, numbered);
        const QUrl parent = QUrl::fromLocalFile(QStringLiteral("/home/ada"));
        QCOMPARE(FileUrls::numbered(FileUrls::child(parent, name), 3),
                 FileUrls::child(parent, numbered));
    }
};

VELMORA_EVENTS_TEST(FileUrlsTest)
#include "FileUrlsTest.moc"
