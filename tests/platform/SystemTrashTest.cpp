// SPDX-License-Identifier: MIT
#include "platform/SystemTrash.h"

#include "filesystem/FileUrls.h"
#include "tests/files/TestFiles.h"
#include "tests/world/TestProgram.h"

#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr uid_t nobody = 65534;

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

QByteArray pathOf(const QUrl &url)
{
    return QFile::encodeName(url.toLocalFile());
}

mode_t permissionsOf(const QString &path)
{
    struct stat status = {};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & 07777U;
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

} // namespace

/// The freedesktop trash. What every trash promises is in SystemTrashContractTest.
class SystemTrashTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<SystemTrash> m_trash;

    QString homeTrash() const { return m_data->filePath(s("data/Trash")); }
    QString homeTrashed(const QString &name) const { return homeTrash() + s("/files/") + name; }
    QString homeInfo(const QString &name) const
    {
        return homeTrash() + s("/info/") + name + s(".trashinfo");
    }
    static QByteArray contentOf(const QString &path)
    {
        return TestFiles::read(FileUrls::fromPath(path));
    }

    /// The file's path from an info file, whose other contents are checked.
    static QByteArray notedPath(const QString &infoPath)
    {
        const QList<QByteArray> lines = contentOf(infoPath).split('\n');
        if (lines.size() != 4 || lines.at(0) != "[Trash Info]" || !lines.at(3).isEmpty() ||
            !lines.at(1).startsWith("Path=") || !lines.at(2).startsWith("DeletionDate="))
            return "no proper note: " + contentOf(infoPath);
        const auto deleted = QDateTime::fromString(
            QString::fromLatin1(lines.at(2).mid(qstrlen("DeletionDate="))), Qt::ISODate);
        const qint64 age = deleted.secsTo(QDateTime::currentDateTime());
        return age >= 0 && age < 60 ? lines.at(1).mid(qstrlen("Path=")) : "no proper date";
    }

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<TestFiles>();
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_data->filePath(s("data"))));
        m_trash = makeSystemTrash();
    }

    void theHomeTrashHoldsTheFileAndANote()
    {
        const QUrl shot = m_files->make(s("50%41 off é.png"));
        const SystemTrash::Trashed trashed = m_trash->trash(shot);
        QCOMPARE(trashed.location->toLocalFile(), homeTrashed(s("50%41 off é.png")));
        QCOMPARE(contentOf(homeTrashed(s("50%41 off é.png"))), s("50%41 off é.png").toUtf8());
        QCOMPARE(notedPath(homeInfo(s("50%41 off é.png"))),
                 pathOf(m_files->folder()) + QByteArray("/50%2541%20off%20%C3%A9.png"));
        QCOMPARE(permissionsOf(homeInfo(s("50%41 off é.png"))), 0600U);
    }

    void theNoteNamesThePlaceAsTheDesktopsOwnToolDoes()
    {
        if (QStandardPaths::findExecutable(s("gio")).isEmpty())
            QSKIP("gio is not installed");
        for (const char *name : {"plain.png", "50%41 é #?&=+,;:@!$'()*[]~_-.png", "\"\\|<>.png",
                                 "日本語 😀.png", " .png"}) {
            const QUrl shot = m_files->make(s(name));
            const QByteArray ours =
                notedPath(homeInfo(FileUrls::lastPathComponent(*m_trash->trash(shot).location)));
            m_files->make(s(name));
            const QTemporaryDir theirData;
            QProcess gio;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(s("XDG_DATA_HOME"), theirData.path());
            gio.setProcessEnvironment(environment);
            gio.start(s("gio"), {s("trash"), shot.toLocalFile()});
            QVERIFY(gio.waitForFinished());
            if (gio.exitCode() != 0)
                QSKIP("gio can't trash files of this folder");
            const QByteArray theirs =
                notedPath(theirData.filePath(s("Trash/info/")) +
                          filesIn(theirData.filePath(s("Trash/info"))).first());
            QCOMPARE(QByteArray::fromPercentEncoding(ours),
                     QByteArray::fromPercentEncoding(theirs));
            QCOMPARE(QByteArray::fromPercentEncoding(ours), pathOf(shot));
        }
    }

    void anotherProgramPutsTheFileBack()
    {
        if (QStandardPaths::findExecutable(s("trash-restore")).isEmpty())
            QSKIP("trash-cli is not installed");
        const QUrl shot = m_files->make(s("50%41 off é.png"), "content");
        QVERIFY(!m_trash->trash(shot).error);
        QProcess restore;
        restore.start(s("trash-restore"), {m_files->folder().toLocalFile()});
        restore.write("0\n");
        restore.closeWriteChannel();
        QVERIFY(restore.waitForFinished());
        QCOMPARE(TestFiles::read(shot), QByteArray("content"));
        QCOMPARE(filesIn(homeTrash() + s("/info")), QStringList());
    }

    void missingFoldersAreMadeForTheOwnerOnly()
    {
        QVERIFY(!QFile::exists(m_data->filePath(s("data"))));
        QVERIFY(!m_trash->trash(m_files->make(s("Shot.png"))).error);
        for (const char *folder : {"data", "data/Trash", "data/Trash/files", "data/Trash/info"})
            QCOMPARE(permissionsOf(m_data->filePath(s(folder))), 0700U);
    }

    void withoutASettingTheTrashIsInTheHome_data()
    {
        QTest::addColumn<QByteArray>("setting");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("relative") << QByteArray("some/folder");
    }

    void withoutASettingTheTrashIsInTheHome()
    {
        QFETCH(QByteArray, setting);
        qputenv("XDG_DATA_HOME", setting);
        const SystemTrash::Trashed trashed = m_trash->trash(m_files->make(s("Shot.png")));
        QVERIFY(trashed.location->toLocalFile().startsWith(QDir::homePath() +
                                                           s("/.local/share/Trash/files/Shot")));
    }

    void aTakenNameGetsACounterBeforeTheExtension()
    {
        m_trash->trash(m_files->make(s("Shot.png"), "1"));
        m_trash->trash(m_files->make(s("Shot.png"), "2"));
        const auto third = m_trash->trash(m_files->make(s("Shot.png"), "3"));
        QCOMPARE(third.location->toLocalFile(), homeTrashed(s("Shot.3.png")));
        QCOMPARE(filesIn(homeTrash() + s("/files")),
                 (QStringList{s("Shot.2.png"), s("Shot.3.png"), s("Shot.png")}));
        QCOMPARE(notedPath(homeInfo(s("Shot.3.png"))), pathOf(m_files->url(s("Shot.png"))));
        QCOMPARE(m_trash->trash(m_files->make(s("Shot"))).location->toLocalFile(),
                 homeTrashed(s("Shot")));
        QCOMPARE(m_trash->trash(m_files->make(s("Shot"))).location->toLocalFile(),
                 homeTrashed(s("Shot.2")));
    }

    void aTrashedFileWithoutANoteIsNotReplaced()
    {
        QVERIFY(QDir().mkpath(homeTrash() + s("/files")));
        TestFiles::write(FileUrls::fromPath(homeTrashed(s("Shot.png"))), "an orphan");
        const auto trashed = m_trash->trash(m_files->make(s("Shot.png")));
        QCOMPARE(trashed.location->toLocalFile(), homeTrashed(s("Shot.2.png")));
        QCOMPARE(contentOf(homeTrashed(s("Shot.png"))), QByteArray("an orphan"));
        QVERIFY(!QFile::exists(homeInfo(s("Shot.png"))));
        QVERIFY(QFile::exists(homeInfo(s("Shot.2.png"))));
    }

    void aNoteWithoutAFileKeepsItsName()
    {
        QVERIFY(QDir().mkpath(homeTrash() + s("/info")));
        TestFiles::write(FileUrls::fromPath(homeInfo(s("Shot.png"))), "an orphan");
        const auto trashed = m_trash->trash(m_files->make(s("Shot.png")));
        QCOMPARE(trashed.location->toLocalFile(), homeTrashed(s("Shot.2.png")));
        QCOMPARE(contentOf(homeInfo(s("Shot.png"))), QByteArray("an orphan"));
    }

    void aLongNameIsCutBetweenCharacters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("end");
        QTest::newRow("letters") << QString(251, u'n') + s(".png") << s(".png");
        QTest::newRow("two bytes each") << QString(125, QChar(0xE9)) + s(".jpeg") << s(".jpeg");
        QTest::newRow("three bytes each") << QString(83, QChar(0x65E5)) + s(".heic") << s(".heic");
        QTest::newRow("four bytes each") << s("😀").repeated(62) + s(".png") << s(".png");
        QTest::newRow("all extension") << u"a." + QString(253, u'x') << QString();
        QTest::newRow("no extension") << QString(255, u'n') << QString();
    }

    void aLongNameIsCutBetweenCharacters()
    {
        QFETCH(QString, name);
        QFETCH(QString, end);
        const QByteArray suffix(".trashinfo");
        for (int time = 0; time < 3; ++time) {
            const auto trashed = m_trash->trash(m_files->make(name));
            QVERIFY2(!trashed.error, trashed.error.message().c_str());
            const QString kept = FileUrls::lastPathComponent(*trashed.location);
            const qsizetype length = kept.toUtf8().size() + suffix.size();
            QVERIFY2(length <= 255 && length > 248, QByteArray::number(length).constData());
            QVERIFY(!kept.contains(QChar::ReplacementCharacter));
            QVERIFY2(kept.endsWith(end), qPrintable(kept));
            QCOMPARE(notedPath(homeInfo(kept)).right(10),
                     pathOf(m_files->url(name)).toPercentEncoding("/").right(10));
            QVERIFY(!m_trash->restore(*trashed.location, m_files->url(name)));
            m_trash->trash(m_files->url(name));
        }
    }

    void aTrashThatIsALinkIsFollowed()
    {
        const QString real = m_data->filePath(s("elsewhere"));
        QVERIFY(QDir().mkpath(real) && QDir().mkpath(m_data->filePath(s("data"))));
        QVERIFY(QFile::link(real, homeTrash()));
        QVERIFY(!m_trash->trash(m_files->make(s("Shot.png"))).error);
        QCOMPARE(filesIn(real + s("/files")), QStringList{s("Shot.png")});
    }

    void aLinkIsTrashedAndNotWhatItLinksTo()
    {
        const QUrl shot = m_files->make(s("Shot.png"));
        const QUrl link = m_files->url(s("link.png"));
        QVERIFY(QFile::link(shot.toLocalFile(), link.toLocalFile()));
        const auto trashed = m_trash->trash(link);
        QVERIFY(QFileInfo(trashed.location->toLocalFile()).isSymLink());
        QVERIFY(FileUrls::exists(shot));
    }

    void restoringTakesTheNoteAway()
    {
        const QUrl shot = m_files->make(s("Shot.png"));
        const QUrl trashed = *m_trash->trash(shot).location;
        QVERIFY(QFile::exists(homeInfo(s("Shot.png"))));
        QVERIFY(!m_trash->restore(trashed, shot));
        QVERIFY(!QFile::exists(homeInfo(s("Shot.png"))));
    }

    void aRestoreThatFailsKeepsTheNote()
    {
        const QUrl shot = m_files->make(s("Shot.png"));
        const QUrl trashed = *m_trash->trash(shot).location;
        TestFiles::write(shot, "somebody else's");
        QVERIFY(m_trash->restore(trashed, shot));
        QVERIFY(QFile::exists(homeInfo(s("Shot.png"))));
    }

    void whatIsTrashedTwiceComesBackInTwoSteps()
    {
        const QUrl shot = m_files->make(s("Shot.png"));
        const QUrl once = *m_trash->trash(shot).location;
        const QUrl twice = *m_trash->trash(once).location;
        QVERIFY(!m_trash->restore(twice, once));
        QVERIFY(!m_trash->restore(once, shot));
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
        QCOMPARE(filesIn(homeTrash() + s("/info")), QStringList());
    }

    void aTrashInTheWayOfAFileIsAnError()
    {
        QVERIFY(QDir().mkpath(m_data->filePath(s("data"))));
        TestFiles::write(FileUrls::fromPath(homeTrash()), "no folder");
        const QUrl shot = m_files->make(s("Shot.png"));
        const auto trashed = m_trash->trash(shot);
        QVERIFY(trashed.error == std::errc::not_a_directory);
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
    }

    void anInfoFolderThatCantBeWrittenIsAnError()
    {
        if (::getuid() != 0)
            QSKIP("only root can be somebody else");
        const QUrl shot = m_files->make(s("Shot.png"));
        QVERIFY(QDir().mkpath(homeTrash() + s("/files")) &&
                QDir().mkpath(homeTrash() + s("/info")));
        QCOMPARE(::chmod(QFile::encodeName(m_data->path()).constData(), 0755), 0);
        QCOMPARE(::chmod(QFile::encodeName(homeTrash() + s("/info")).constData(), 0555), 0);
        QCOMPARE(::chmod(pathOf(m_files->folder()).constData(), 0755), 0);
        QCOMPARE(::seteuid(nobody), 0);
        const auto trashed = m_trash->trash(shot);
        QCOMPARE(::seteuid(0), 0);
        QVERIFY(trashed.error == std::errc::permission_denied);
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
    }

    void aFileThatMayNotBeMovedLeavesNoNote()
    {
        if (::getuid() != 0)
            QSKIP("only root can be somebody else");
        const QUrl shot = m_files->make(s("Shot.png"));
        QVERIFY(QDir().mkpath(homeTrash() + s("/files")) &&
                QDir().mkpath(homeTrash() + s("/info")));
        const QStringList folders = {m_data->path(), m_data->filePath(s("data")), homeTrash(),
                                     homeTrash() + s("/files"), homeTrash() + s("/info")};
        for (const QString &folder : folders)
            QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0777), 0);
        QCOMPARE(::chmod(pathOf(m_files->folder()).constData(), 0755), 0);
        QCOMPARE(::seteuid(nobody), 0);
        const auto trashed = m_trash->trash(shot);
        QCOMPARE(::seteuid(0), 0);
        QVERIFY(trashed.error == std::errc::permission_denied);
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
        QCOMPARE(filesIn(homeTrash() + s("/info")), QStringList());
    }

    void whatIsNoPathIsAnError()
    {
        for (const char *text : {"", "file:relative.png", "https://example.org/a.png", "file:///"})
            QVERIFY(m_trash->trash(QUrl(s(text))).error);
    }
};

VELMORA_EVENTS_TEST(SystemTrashTest)
#include "SystemTrashTest.moc"
