// SPDX-License-Identifier: MIT
#include "platform/SystemTrash.h"

#include "tests/platform/SystemTrashFixture.h"
#include "tests/world/TestProgram.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

mode_t permissionsOf(const QString &path)
{
    struct stat status = {};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & 07777U;
}

} // namespace

/// The freedesktop trash. What every trash promises is in SystemTrashContractTest.
class SystemTrashTest : public QObject, private SystemTrashFixture
{
    Q_OBJECT

    void makeFolders() const
    {
        QVERIFY(QDir().mkpath(homeTrash() + u"/files"_s) &&
                QDir().mkpath(homeTrash() + u"/info"_s));
    }
    static void setPermissions(const QStringList &folders, mode_t permissions)
    {
        for (const QString &folder : folders)
            QCOMPARE(::chmod(QFile::encodeName(folder).constData(), permissions), 0);
    }
    SystemTrash::Trashed trashAsNobody(const QUrl &file) const
    {
        constexpr uid_t nobody = 65534;
        if (::seteuid(nobody) != 0)
            qFatal("can't be somebody else");
        const SystemTrash::Trashed trashed = m_trash->trash(file);
        if (::seteuid(0) != 0)
            qFatal("can't be root again");
        return trashed;
    }

private Q_SLOTS:
    void init() { begin(); }

    void theHomeTrashHoldsTheFileAndANote()
    {
        const QUrl shot = m_files->make(u"50%41 off é.png"_s);
        const SystemTrash::Trashed trashed = m_trash->trash(shot);
        QCOMPARE(trashed.location->toLocalFile(), homeTrashed(u"50%41 off é.png"_s));
        QCOMPARE(contentOf(homeTrashed(u"50%41 off é.png"_s)), u"50%41 off é.png"_s.toUtf8());
        QCOMPARE(notedPath(homeInfo(u"50%41 off é.png"_s)),
                 pathOf(m_files->folder()) + QByteArray("/50%2541%20off%20%C3%A9.png"));
        QCOMPARE(permissionsOf(homeInfo(u"50%41 off é.png"_s)), 0600U);
    }

    void theNoteNamesThePlaceAsTheDesktopsOwnToolDoes()
    {
        if (QStandardPaths::findExecutable(u"gio"_s).isEmpty())
            QSKIP("gio is not installed");
        for (const char *name : {"plain.png", "50%41 é #?&=+,;:@!$'()*[]~_-.png", "\"\\|<>.png",
                                 "日本語 😀.png", " .png"}) {
            const QUrl shot = m_files->make(QString::fromUtf8(name));
            const QByteArray ours =
                notedPath(homeInfo(FileUrls::lastPathComponent(*m_trash->trash(shot).location)));
            m_files->make(QString::fromUtf8(name));
            const QTemporaryDir theirData;
            QProcess gio;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u"XDG_DATA_HOME"_s, theirData.path());
            gio.setProcessEnvironment(environment);
            gio.start(u"gio"_s, {u"trash"_s, shot.toLocalFile()});
            QVERIFY(gio.waitForFinished());
            if (gio.exitCode() != 0)
                QSKIP("gio can't trash files of this folder");
            const QByteArray theirs =
                notedPath(theirData.filePath(u"Trash/info/"_s) +
                          filesIn(theirData.filePath(u"Trash/info"_s)).first());
            QCOMPARE(QByteArray::fromPercentEncoding(ours),
                     QByteArray::fromPercentEncoding(theirs));
            QCOMPARE(QByteArray::fromPercentEncoding(ours), pathOf(shot));
        }
    }

    void anotherProgramPutsTheFileBack()
    {
        if (QStandardPaths::findExecutable(u"trash-restore"_s).isEmpty())
            QSKIP("trash-cli is not installed");
        const QUrl shot = m_files->make(u"50%41 off é.png"_s, "content");
        QVERIFY(!m_trash->trash(shot).error);
        QProcess restore;
        restore.start(u"trash-restore"_s, {m_files->folder().toLocalFile()});
        restore.write("0\n");
        restore.closeWriteChannel();
        QVERIFY(restore.waitForFinished());
        QCOMPARE(TestFiles::read(shot), QByteArray("content"));
        QCOMPARE(filesIn(homeTrash() + u"/info"_s), QStringList());
    }

    void missingFoldersAreMadeForTheOwnerOnly()
    {
        QVERIFY(!QFile::exists(m_data->filePath(u"data"_s)));
        QVERIFY(!m_trash->trash(m_files->make(u"Shot.png"_s)).error);
        for (const char *folder : {"data", "data/Trash", "data/Trash/files", "data/Trash/info"})
            QCOMPARE(permissionsOf(m_data->filePath(QString::fromUtf8(folder))), 0700U);
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
        const SystemTrash::Trashed trashed = m_trash->trash(m_files->make(u"Shot.png"_s));
        QVERIFY(trashed.location->toLocalFile().startsWith(QDir::homePath() +
                                                           u"/.local/share/Trash/files/Shot"_s));
    }

    void aTrashThatIsALinkIsFollowed()
    {
        const QString real = m_data->filePath(u"elsewhere"_s);
        QVERIFY(QDir().mkpath(real) && QDir().mkpath(m_data->filePath(u"data"_s)));
        QVERIFY(QFile::link(real, homeTrash()));
        QVERIFY(!m_trash->trash(m_files->make(u"Shot.png"_s)).error);
        QCOMPARE(filesIn(real + u"/files"_s), QStringList{u"Shot.png"_s});
    }

    void aLinkIsTrashedAndNotWhatItLinksTo()
    {
        const QUrl shot = m_files->make(u"Shot.png"_s);
        const QUrl link = m_files->url(u"link.png"_s);
        QVERIFY(QFile::link(shot.toLocalFile(), link.toLocalFile()));
        const auto trashed = m_trash->trash(link);
        QVERIFY(QFileInfo(trashed.location->toLocalFile()).isSymLink());
        QVERIFY(FileUrls::exists(shot));
    }

    void restoringTakesTheNoteAway()
    {
        const QUrl shot = m_files->make(u"Shot.png"_s);
        const QUrl trashed = *m_trash->trash(shot).location;
        QVERIFY(QFile::exists(homeInfo(u"Shot.png"_s)));
        QVERIFY(!m_trash->restore(trashed, shot));
        QVERIFY(!QFile::exists(homeInfo(u"Shot.png"_s)));
    }

    void aRestoreThatFailsKeepsTheNote()
    {
        const QUrl shot = m_files->make(u"Shot.png"_s);
        const QUrl trashed = *m_trash->trash(shot).location;
        TestFiles::write(shot, "somebody else's");
        QVERIFY(m_trash->restore(trashed, shot));
        QVERIFY(QFile::exists(homeInfo(u"Shot.png"_s)));
    }

    void whatIsTrashedTwiceComesBackInTwoSteps()
    {
        const QUrl shot = m_files->make(u"Shot.png"_s);
        const QUrl once = *m_trash->trash(shot).location;
        const QUrl twice = *m_trash->trash(once).location;
        QVERIFY(!m_trash->restore(twice, once));
        QVERIFY(!m_trash->restore(once, shot));
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
        QCOMPARE(filesIn(homeTrash() + u"/info"_s), QStringList());
    }

    void aTrashInTheWayOfAFileIsAnError()
    {
        QVERIFY(QDir().mkpath(m_data->filePath(u"data"_s)));
        TestFiles::write(FileUrls::fromPath(homeTrash()), "no folder");
        const QUrl shot = m_files->make(u"Shot.png"_s);
        const auto trashed = m_trash->trash(shot);
        QVERIFY(trashed.error == std::errc::not_a_directory);
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
    }

    void anInfoFolderThatCantBeWrittenIsAnError()
    {
        if (::getuid() != 0)
            QSKIP("only root can be somebody else");
        const QUrl shot = m_files->make(u"Shot.png"_s);
        makeFolders();
        setPermissions({m_data->path(), m_files->folder().toLocalFile()}, 0755);
        setPermissions({homeTrash() + u"/info"_s}, 0555);
        QVERIFY(trashAsNobody(shot).error == std::errc::permission_denied);
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
    }

    void aFileThatMayNotBeMovedLeavesNoNote()
    {
        if (::getuid() != 0)
            QSKIP("only root can be somebody else");
        const QUrl shot = m_files->make(u"Shot.png"_s);
        makeFolders();
        setPermissions({m_data->path(), m_data->filePath(u"data"_s), homeTrash(),
                        homeTrash() + u"/files"_s, homeTrash() + u"/info"_s},
                       0777);
        setPermissions({m_files->folder().toLocalFile()}, 0755);
        QVERIFY(trashAsNobody(shot).error == std::errc::permission_denied);
        QCOMPARE(TestFiles::read(shot), QByteArray("Shot.png"));
        QCOMPARE(filesIn(homeTrash() + u"/info"_s), QStringList());
    }

    void whatIsNoPathIsAnError()
    {
        for (const char *text : {"", "file:relative.png", "https://example.org/a.png", "file:///"})
            QVERIFY(m_trash->trash(QUrl(QString::fromUtf8(text))).error);
    }
};

VELMORA_EVENTS_TEST(SystemTrashTest)
#include "SystemTrashTest.moc"
