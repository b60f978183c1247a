// SPDX-License-Identifier: MIT
#include "platform/SystemTrash.h"

#include "filesystem/FileUrls.h"
#include "tests/files/TestFiles.h"
#include "tests/world/PrivateMount.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QTest>

#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

} // namespace

/// Files on another file system than the home.
class SystemTrashOnOtherFileSystemsTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<PrivateMount> m_disk;
    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<SystemTrash> m_trash = makeSystemTrash();
    const QString m_user = QString::number(::getuid());
    QUrl m_shot;

    QString common() const { return m_disk->filePath(u".Trash"_s); }
    QString own() const { return m_disk->filePath(u".Trash-"_s + m_user); }
    QString home() const { return m_data->filePath(u"Trash"_s); }

    static QByteArray contentOf(const QString &path)
    {
        return TestFiles::read(FileUrls::fromPath(path));
    }
    /// The file is in this trash and nowhere else, and its info file records `noted` as its path.
    static void checkTrashed(const SystemTrash::Trashed &trashed, const QString &trash,
                             const QByteArray &noted)
    {
        QVERIFY2(!trashed.error, trashed.error.message().c_str());
        QCOMPARE(trashed.location->toLocalFile(), trash + u"/files/a shot.png"_s);
        QCOMPARE(contentOf(trash + u"/files/a shot.png"_s), QByteArray("pixels"));
        const QByteArray info = contentOf(trash + u"/info/a shot.png.trashinfo"_s);
        QCOMPARE(info.split('\n').value(1), QByteArray("Path=" + noted));
    }

private Q_SLOTS:
    void init()
    {
        m_disk = std::make_unique<PrivateMount>("size=1m,mode=755");
        if (!*m_disk)
            QSKIP(PrivateMount::unavailable);
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_data->path()));
        QVERIFY(QDir().mkpath(m_disk->filePath(u"some/folder"_s)));
        m_shot = FileUrls::fromPath(m_disk->filePath(u"some/folder/a shot.png"_s));
        TestFiles::write(m_shot, "pixels");
    }

    void theUsersOwnTrashThereIsMadeAndUsed()
    {
        checkTrashed(m_trash->trash(m_shot), own(), "some/folder/a%20shot.png");
        QCOMPARE(QFileInfo(own()).permissions() & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
        QVERIFY(!FileUrls::exists(m_shot));
        QVERIFY(!QFile::exists(common()));
    }

    void aFileAtTheTopIsNotedByItsNameAlone()
    {
        const QUrl top = FileUrls::fromPath(m_disk->filePath(u"a shot.png"_s));
        TestFiles::write(top, "pixels");
        checkTrashed(m_trash->trash(top), own(), "a%20shot.png");
    }

    void theCommonTrashIsPreferredWhereItIsSafe()
    {
        QVERIFY(QDir().mkdir(common()));
        QCOMPARE(::chmod(QFile::encodeName(common()).constData(), 01777), 0);
        checkTrashed(m_trash->trash(m_shot), common() + u'/' + m_user, "some/folder/a%20shot.png");
        QVERIFY(!QFile::exists(own()));
    }

    void aCommonTrashThatIsNotSafeIsNotUsed_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::newRow("a link") << true;
        QTest::newRow("not sticky") << false;
    }

    void aCommonTrashThatIsNotSafeIsNotUsed()
    {
        QFETCH(bool, isLink);
        const QString real = m_disk->filePath(isLink ? u"real"_s : u".Trash"_s);
        QVERIFY(QDir().mkdir(real));
        QCOMPARE(::chmod(QFile::encodeName(real).constData(), isLink ? 01777 : 0777), 0);
        if (isLink)
            QVERIFY(QFile::link(real, common()));
        checkTrashed(m_trash->trash(m_shot), own(), "some/folder/a%20shot.png");
        QCOMPARE(QDir(real).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    }

    void aForeignFolderInTheCommonTrashIsNotUsed()
    {
        QVERIFY(QDir().mkpath(common() + u'/' + m_user));
        QCOMPARE(::chmod(QFile::encodeName(common()).constData(), 01777), 0);
        QCOMPARE(::chown(QFile::encodeName(common() + u'/' + m_user).constData(), 65534, 65534), 0);
        checkTrashed(m_trash->trash(m_shot), own(), "some/folder/a%20shot.png");
    }

    void withoutATrashThereTheHomesHoldsACopy_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::newRow("a link") << true;
        QTest::newRow("somebody else's") << false;
    }

    void withoutATrashThereTheHomesHoldsACopy()
    {
        QFETCH(bool, isLink);
        if (isLink) {
            QVERIFY(QDir().mkdir(m_disk->filePath(u"real"_s)));
            QVERIFY(QFile::link(m_disk->filePath(u"real"_s), own()));
        } else {
            QVERIFY(QDir().mkdir(own()));
            QCOMPARE(::chown(QFile::encodeName(own()).constData(), 65534, 65534), 0);
        }
        const QByteArray path = QFile::encodeName(m_shot.toLocalFile());
        const struct timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 5}};
        QCOMPARE(::utimensat(AT_FDCWD, path.constData(), times, 0), 0);
        QCOMPARE(::setxattr(path.constData(), "trusted.velmora", "kept", 4, 0), 0);
        checkTrashed(m_trash->trash(m_shot), home(), path.toPercentEncoding("/"));

        const QByteArray copy = QFile::encodeName(home() + u"/files/a shot.png"_s);
        struct stat status = {};
        QCOMPARE(::stat(copy.constData(), &status), 0);
        QCOMPARE(status.st_mtim.tv_sec, 1'100'000'000);
        QCOMPARE(status.st_mtim.tv_nsec, 5);
        char value[8] = {};
        QCOMPARE(::getxattr(copy.constData(), "trusted.velmora", value, sizeof value), 4);
        QVERIFY(!FileUrls::exists(m_shot));
    }

    void aCopyIsRestoredToo()
    {
        TestFiles::write(FileUrls::fromPath(own()), "in the way");
        const QUrl trashed = *m_trash->trash(m_shot).location;
        QVERIFY(trashed.toLocalFile().startsWith(home()));
        QVERIFY(!m_trash->restore(trashed, m_shot));
        QCOMPARE(TestFiles::read(m_shot), QByteArray("pixels"));
        QCOMPARE(filesIn(home() + u"/info"_s), QStringList());
        QCOMPARE(filesIn(home() + u"/files"_s), QStringList());
    }

    void aDiskThatMayNotBeWrittenKeepsItsFile()
    {
        m_disk->setReadOnly(true);
        const SystemTrash::Trashed trashed = m_trash->trash(m_shot);
        QVERIFY(trashed.error == std::errc::read_only_file_system);
        QCOMPARE(TestFiles::read(m_shot), QByteArray("pixels"));
        QCOMPARE(filesIn(home() + u"/files"_s), QStringList());
        QCOMPARE(filesIn(home() + u"/info"_s), QStringList());
    }

    void aFullDiskIsAnErrorAndKeepsTheFile()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_disk->filePath(u"data"_s)));
        QVERIFY(QDir().mkpath(m_disk->filePath(u"data/Trash/files"_s)) &&
                QDir().mkpath(m_disk->filePath(u"data/Trash/info"_s)));
        m_disk->fill();
        const SystemTrash::Trashed trashed = m_trash->trash(m_shot);
        QVERIFY(trashed.error == std::errc::no_space_on_device);
        QCOMPARE(TestFiles::read(m_shot), QByteArray("pixels"));
        QCOMPARE(filesIn(m_disk->filePath(u"data/Trash/info"_s)), QStringList());
    }

    void aFullDiskElsewhereTrashesToTheHome()
    {
        m_disk->fill();
        checkTrashed(m_trash->trash(m_shot), home(),
                     QFile::encodeName(m_shot.toLocalFile()).toPercentEncoding("/"));
        QCOMPARE(filesIn(own() + u"/info"_s), QStringList());
    }

    void aFullHomeKeepsTheFileAndNoHalfCopy()
    {
        const PrivateMount full("size=64k");
        QVERIFY(bool(full));
        qputenv("XDG_DATA_HOME", QFile::encodeName(full.folder()));
        TestFiles::write(FileUrls::fromPath(own()), "in the way");
        TestFiles::write(m_shot, QByteArray(200'000, 'x'));
        const SystemTrash::Trashed trashed = m_trash->trash(m_shot);
        QVERIFY(trashed.error == std::errc::no_space_on_device);
        QCOMPARE(TestFiles::read(m_shot).size(), 200'000);
        QCOMPARE(filesIn(full.filePath(u"Trash/files"_s)), QStringList());
        QCOMPARE(filesIn(full.filePath(u"Trash/info"_s)), QStringList());
    }

    void throughALinkedFolderTheFileGoesWhereItStands()
    {
        const QTemporaryDir elsewhere;
        const QString link = elsewhere.filePath(u"link"_s);
        QVERIFY(QFile::link(m_disk->filePath(u"some/folder"_s), link));
        checkTrashed(m_trash->trash(FileUrls::fromPath(link + u"/a shot.png"_s)), own(),
                     "some/folder/a%20shot.png");
    }
};

VELMORA_EVENTS_TEST(SystemTrashOnOtherFileSystemsTest)
#include "SystemTrashOnOtherFileSystemsTest.moc"
