// SPDX-License-Identifier: MIT
#include "files/ScreenshotTrash.h"

#include "filesystem/FileUrls.h"
#include "tests/fakes/FakeSystemTrash.h"
#include "tests/files/LogTail.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class ScreenshotTrashTest : public QObject
{
    Q_OBJECT

    static QString s(const char *text) { return QString::fromUtf8(text); }

    QUrl inHomeTrash(const QString &name) const
    {
        return FileUrls::fromPath(QDir::homePath() + s("/.Trash/") + name);
    }

private Q_SLOTS:
    void cleanup()
    {
        QDir(QDir::homePath() + s("/.Trash")).removeRecursively();
        QFile::remove(QDir::homePath() + s("/.Trash"));
    }

    void theSystemsTrashIsUsedAndNothingLogged()
    {
        const TestFiles files;
        FakeSystemTrash trash;
        const QUrl shot = files.make(s("Shot.png"));
        const LogTail log;
        const ScreenshotTrash::Result result = ScreenshotTrash::move(trash, shot);
        QVERIFY(!result.error);
        QVERIFY(!FileUrls::exists(shot));
        QCOMPARE(TestFiles::read(*result.location), QByteArray("Shot.png"));
        QCOMPARE(log.messagesWith(files.folder().toLocalFile()), QStringList());
        QVERIFY(!QDir(QDir::homePath() + s("/.Trash")).exists());
    }

    void theAnswerIsStandardised()
    {
        class UntidyTrash : public FakeSystemTrash
        {
        public:
            Trashed trash(const QUrl &file) override
            {
                Trashed trashed = FakeSystemTrash::trash(file);
                trashed.location =
                    QUrl::fromLocalFile(FileUrls::parentFolder(*trashed.location).toLocalFile() +
                                        u"/./"_s + FileUrls::lastPathComponent(*trashed.location));
                return trashed;
            }
        };
        const TestFiles files;
        UntidyTrash trash;
        const QUrl untidy = QUrl::fromLocalFile(
            files.make(s("Shot.png")).toLocalFile().replace(s("/Shot"), s("//Shot")));
        const ScreenshotTrash::Result result = ScreenshotTrash::move(trash, untidy);
        QCOMPARE(*result.location, FileUrls::standardized(*result.location));
        QVERIFY(FileUrls::exists(*result.location));
    }

    void aMissingFileIsAnErrorAndNotLogged()
    {
        const TestFiles files;
        FakeSystemTrash trash;
        const LogTail log;
        const ScreenshotTrash::Result result =
            ScreenshotTrash::move(trash, files.url(s("gone.png")));
        QVERIFY(result.error == std::errc::no_such_file_or_directory);
        QVERIFY(!result.location);
        QCOMPARE(log.messagesWith(files.folder().toLocalFile()), QStringList());
    }

    void aRefusalLeadsToTheHomesTrashFolder()
    {
        const TestFiles files;
        FakeSystemTrash trash;
        trash.refusal = std::make_error_code(std::errc::no_space_on_device);
        const QUrl shot = files.make(s("Shot.png"));
        const LogTail log;
        const ScreenshotTrash::Result result = ScreenshotTrash::move(trash, shot);
        QVERIFY(!result.error);
        QCOMPARE(result.location, inHomeTrash(s("Shot.png")));
        QCOMPARE(TestFiles::read(*result.location), QByteArray("Shot.png"));
        QVERIFY(!FileUrls::exists(shot));
        const QString path = shot.toLocalFile();
        QCOMPARE(log.messagesWith(path),
                 (QStringList{s("system trash failed ") + path + s(": No space left on device"),
                              s("fallback trash moved ") + path + s(" to ") +
                                  inHomeTrash(s("Shot.png")).toLocalFile()}));
    }

    void aTrashThatKeepsThePlaceToItselfLeadsThereToo()
    {
        const TestFiles files;
        FakeSystemTrash trash;
        trash.isSilent = true;
        const QUrl shot = files.make(s("Shot.png"));
        const LogTail log;
        const ScreenshotTrash::Result result = ScreenshotTrash::move(trash, shot);
        QCOMPARE(result.location, inHomeTrash(s("Shot.png")));
        const QString path = shot.toLocalFile();
        QCOMPARE(log.messagesWith(path), QStringList{s("fallback trash moved ") + path + s(" to ") +
                                                     inHomeTrash(s("Shot.png")).toLocalFile()});
    }

    void takenNamesThereGetACounter()
    {
        const TestFiles files;
        FakeSystemTrash trash;
        trash.refusal = std::make_error_code(std::errc::io_error);
        QVERIFY(QDir::home().mkpath(s(".Trash")));
        TestFiles::write(inHomeTrash(s("Shot.png")), "first");
        TestFiles::write(inHomeTrash(s("Shot-2.png")), "second");
        const ScreenshotTrash::Result result =
            ScreenshotTrash::move(trash, files.make(s("Shot.png")));
        QCOMPARE(result.location, inHomeTrash(s("Shot-3.png")));
        QCOMPARE(TestFiles::read(inHomeTrash(s("Shot.png"))), QByteArray("first"));
        QCOMPARE(TestFiles::read(inHomeTrash(s("Shot-2.png"))), QByteArray("second"));
        const ScreenshotTrash::Result bare = ScreenshotTrash::move(trash, files.make(s("Shot")));
        QCOMPARE(bare.location, inHomeTrash(s("Shot")));
        const ScreenshotTrash::Result again = ScreenshotTrash::move(trash, files.make(s("Shot")));
        QCOMPARE(again.location, inHomeTrash(s("Shot-2")));
    }

    void whereBothFailTheFileStaysAndTheErrorIsTheMoves()
    {
        const TestFiles files;
        FakeSystemTrash trash;
        trash.refusal = std::make_error_code(std::errc::no_space_on_device);
        TestFiles::write(FileUrls::fromPath(QDir::homePath() + s("/.Trash")), "a file in the way");
        const QUrl shot = files.make(s("Shot.png"));
        const LogTail log;
        const ScreenshotTrash::Result result = ScreenshotTrash::move(trash, shot);
        QVERIFY(result.error == std::errc::not_a_directory);
        QVERIFY(!result.location);
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
        const QString path = shot.toLocalFile();
        QCOMPARE(log.messagesWith(path),
                 QStringList{s("system trash failed ") + path + s(": No space left on device")});
    }
};

VELMORA_EVENTS_TEST(ScreenshotTrashTest)
#include "ScreenshotTrashTest.moc"
