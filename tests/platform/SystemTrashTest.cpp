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

using namespace Qt::StringLiterals;

namespace
{

constexpr uid_t nobody = 65534;

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

    QString homeTrash() const { return m_data->filePath(u"data/Trash"_s); }
    QString homeTrashed(const QString &name) const { return homeTrash() + u"/files/"_s + name; }
    QString homeInfo(const QString &name) const
    {
        return homeTrash() + u"/info/"_s + name + u".trashinfo"_s;
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
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_data->filePath(u"data"_s)));
        m_trash = makeSystemTrash();
    }

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

    void aTakenNameGetsACounterBeforeTheExtension()
    {
        m_trash->trash(m_files->make(u"Shot.png"_s, "1"));
        m_trash->trash(m_files->make(u"Shot.png"_s, "2"));
        const auto third = m_trash->trash(m_files->make(u"Shot.png"_s, "3"));
        QCOMPARE(third.location->toLocalFile(), homeTrashed(u"Shot.3.png"_s));
        QCOMPARE(filesIn(homeTrash() + u"/files"_s),
                 (QStringList{u"Shot.2.png"_s, u"Shot.3.png"_s, u"Shot.png"_s}));
        QCOMPARE(notedPath(homeInfo(u"Shot.3.png"_s)), pathOf(m_files->url(u"Shot.png"_s)));
        QCOMPARE(m_trash->trash(m_files->make(u"Shot"_s)).location->toLocalFile(),
                 homeTrashed(u"Shot"_s));
        QCOMPARE(m_trash->trash(m_files->make(u"Shot"_s)).location->toLocalFile(),
                 homeTrashed(u"Shot.2"_s));
    }

    void aTrashedFileWithoutANoteIsNotReplaced()
    {
        QVERIFY(QDir().mkpath(homeTrash() + u"/files"_s));
        TestFiles::write(FileUrls::fromPath(homeTrashed(u"Shot.png"_s)), "an orphan");
        const auto trashed = m_trash->trash(m_files->make(u"Shot.png"_s));
        QCOMPARE(trashed.location->toLocalFile(), homeTrashed(u"Shot.2.png"_s));
        QCOMPARE(contentOf(homeTrashed(u"Shot.png"_s)), QByteArray("an orphan"));
        QVERIFY(!QFile::exists(homeInfo(u"Shot.png"_s)));
        QVERIFY(QFile::exists(homeInfo(u"Shot.2.png"_s)));
    }

    void aNoteWithoutAFileKeepsItsName()
    {
        QVERIFY(QDir().mkpath(homeTrash() + u"/info"_s));
        TestFiles::write(FileUrls::fromPath(homeInfo(u"Shot.png"_s)), "an orphan");
        const auto trashed = m_trash->trash(m_files->make(u"Shot.png"_s));
        QCOMPARE(trashed.location->toLocalFile(), homeTrashed(u"Shot.2.png"_s));
        QCOMPARE(contentOf(homeInfo(u"Shot.png"_s)), QByteArray("an orphan"));
    }

    void aLongNameIsCutBetweenCharacters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("end");
        QTest::newRow("letters") << QString(251, u'n') + u".png"_s << u".png"_s;
        QTest::newRow("two bytes each") << QString(125, QChar(0xE9)) + u".jpeg"_s << u".jpeg"_s;
        QTest::newRow("three bytes each") << QString(83, QChar(0x65E5)) + u".heic"_s << u".heic"_s;
        QTest::newRow("four bytes each") << u"😀"_s.repeated(62) + u".png"_s << u".png"_s;
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
        QVERIFY(QDir().mkpath(homeTrash() + u"/files"_s) &&
                QDir().mkpath(homeTrash() + u"/info"_s));
        QCOMPARE(::chmod(QFile::encodeName(m_data->path()).constData(), 0755), 0);
        QCOMPARE(::chmod(QFile::encodeName(homeTrash() + u"/info"_s).constData(), 0555), 0);
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
        const QUrl shot = m_files->make(u"Shot.png"_s);
        QVERIFY(QDir().mkpath(homeTrash() + u"/files"_s) &&
                QDir().mkpath(homeTrash() + u"/info"_s));
        const QStringList folders = {m_data->path(), m_data->filePath(u"data"_s), homeTrash(),
                                     homeTrash() + u"/files"_s, homeTrash() + u"/info"_s};
        for (const QString &folder : folders)
            QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0777), 0);
        QCOMPARE(::chmod(pathOf(m_files->folder()).constData(), 0755), 0);
        QCOMPARE(::seteuid(nobody), 0);
        const auto trashed = m_trash->trash(shot);
        QCOMPARE(::seteuid(0), 0);
        QVERIFY(trashed.error == std::errc::permission_denied);
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
