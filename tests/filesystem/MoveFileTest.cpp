// SPDX-License-Identifier: MIT
#include "filesystem/moveFile.h"

#include "filesystem/FileUrls.h"
#include "tests/filesystem/PoorFileSystem.h"
#include "tests/world/PrivateMount.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace
{

const QByteArray content(300'000, 'c');

QByteArray pathOf(const QUrl &url)
{
    return QFile::encodeName(url.toLocalFile());
}

void write(const QUrl &url, const QByteArray &bytes)
{
    QFile file(url.toLocalFile());
    QVERIFY(file.open(QFile::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray read(const QUrl &url)
{
    QFile file(url.toLocalFile());
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList namesIn(const QUrl &folder)
{
    return QDir(folder.toLocalFile())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

struct stat statusOf(const QUrl &url)
{
    struct stat status = {};
    if (::lstat(pathOf(url).constData(), &status) != 0)
        qWarning("no status of %s", pathOf(url).constData());
    return status;
}

} // namespace

/// Tests each promise within one file system and between two.
class MoveFileTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_here;
    /// On another file system.
    std::unique_ptr<QTemporaryDir> m_elsewhere;

    static QString s(const char *text) { return QString::fromUtf8(text); }

    QUrl here(const char *name) const { return FileUrls::fromPath(m_here->filePath(s(name))); }
    QUrl elsewhere(const char *name) const
    {
        return FileUrls::fromPath(m_elsewhere->filePath(s(name)));
    }
    QUrl target(bool isElsewhere, const char *name) const
    {
        return isElsewhere ? elsewhere(name) : here(name);
    }

    static void addPlaces()
    {
        QTest::addColumn<bool>("isElsewhere");
        QTest::newRow("on one file system") << false;
        QTest::newRow("to another file system") << true;
    }

private Q_SLOTS:
    void init()
    {
        m_here = std::make_unique<QTemporaryDir>();
        m_elsewhere = std::make_unique<QTemporaryDir>(s("/dev/shm/velmora-XXXXXX"));
        QVERIFY(m_here->isValid() && m_elsewhere->isValid());
        QVERIFY(statusOf(here("")).st_dev != statusOf(elsewhere("")).st_dev);
        write(here("source"), content);
    }

    void theFileIsThereAndNoMoreHere_data() { addPlaces(); }
    void theFileIsThereAndNoMoreHere()
    {
        QFETCH(bool, isElsewhere);
        QVERIFY(!moveFile(here("source"), target(isElsewhere, "moved")));
        QCOMPARE(read(target(isElsewhere, "moved")), content);
        QVERIFY(!FileUrls::exists(here("source")));
        QCOMPARE(namesIn(target(isElsewhere, "")), QStringList{s("moved")});
    }

    void anEmptyFileIsMovedToo_data() { addPlaces(); }
    void anEmptyFileIsMovedToo()
    {
        QFETCH(bool, isElsewhere);
        write(here("source"), {});
        QVERIFY(!moveFile(here("source"), target(isElsewhere, "moved")));
        QCOMPARE(statusOf(target(isElsewhere, "moved")).st_size, 0);
    }

    void timePermissionsAndAttributesStay_data() { addPlaces(); }
    void timePermissionsAndAttributesStay()
    {
        QFETCH(bool, isElsewhere);
        const QByteArray path = pathOf(here("source"));
        const struct timespec times[] = {{1'000'000'000, 111}, {1'100'000'000, 123'456'789}};
        QCOMPARE(::utimensat(AT_FDCWD, path.constData(), times, 0), 0);
        QCOMPARE(::chmod(path.constData(), 0640), 0);
        const bool hasAttributes =
            ::setxattr(path.constData(), "trusted.velmora", "value", 5, 0) == 0;
        QVERIFY(!moveFile(here("source"), target(isElsewhere, "moved")));

        const QUrl moved = target(isElsewhere, "moved");
        const struct stat status = statusOf(moved);
        QCOMPARE(status.st_mtim.tv_sec, 1'100'000'000);
        QCOMPARE(status.st_mtim.tv_nsec, 123'456'789);
        QCOMPARE(status.st_mode & 07777U, 0640U);
        if (!hasAttributes)
            QSKIP("this user or file system can't have extended attributes");
        char value[16] = {};
        QCOMPARE(::getxattr(pathOf(moved).constData(), "trusted.velmora", value, sizeof value), 5);
        QCOMPARE(QByteArray(value), QByteArray("value"));
    }

    void aTakenDestinationIsLeftAlone_data() { addPlaces(); }
    void aTakenDestinationIsLeftAlone()
    {
        QFETCH(bool, isElsewhere);
        const QUrl taken = target(isElsewhere, "taken");
        write(taken, "somebody else's");
        QVERIFY(moveFile(here("source"), taken) == std::errc::file_exists);
        QCOMPARE(read(taken), QByteArray("somebody else's"));
        QCOMPARE(read(here("source")), content);
        QCOMPARE(namesIn(target(isElsewhere, "")).filter(s("velmora")), QStringList());
    }

    void aLinkToNothingIsTakenToo_data() { addPlaces(); }
    void aLinkToNothingIsTakenToo()
    {
        QFETCH(bool, isElsewhere);
        const QUrl taken = target(isElsewhere, "taken");
        QCOMPARE(::symlink("/nowhere", pathOf(taken).constData()), 0);
        QVERIFY(moveFile(here("source"), taken) == std::errc::file_exists);
        QCOMPARE(read(here("source")), content);
        QVERIFY(S_ISLNK(statusOf(taken).st_mode));
        QVERIFY(!QFile::exists(s("/nowhere")));
    }

    void aFolderIsTakenToo_data() { addPlaces(); }
    void aFolderIsTakenToo()
    {
        QFETCH(bool, isElsewhere);
        const QUrl taken = target(isElsewhere, "taken");
        QVERIFY(QDir().mkdir(taken.toLocalFile()));
        QVERIFY(moveFile(here("source"), taken) == std::errc::file_exists);
        QCOMPARE(read(here("source")), content);
        QCOMPARE(namesIn(taken), QStringList());
    }

    void itsOwnPlaceIsTakenToo()
    {
        QVERIFY(moveFile(here("source"), here("source")) == std::errc::file_exists);
        QCOMPARE(read(here("source")), content);
    }

    void aVanishedSourceIsAnError_data() { addPlaces(); }
    void aVanishedSourceIsAnError()
    {
        QFETCH(bool, isElsewhere);
        QVERIFY(moveFile(here("gone"), target(isElsewhere, "moved")) ==
                std::errc::no_such_file_or_directory);
        QVERIFY(!FileUrls::exists(target(isElsewhere, "moved")));
    }

    void aMissingFolderIsAnError_data() { addPlaces(); }
    void aMissingFolderIsAnError()
    {
        QFETCH(bool, isElsewhere);
        QVERIFY(moveFile(here("source"), target(isElsewhere, "no/folder")) ==
                std::errc::no_such_file_or_directory);
        QCOMPARE(read(here("source")), content);
    }

    void aNameThatIsTooLongIsAnError_data() { addPlaces(); }
    void aNameThatIsTooLongIsAnError()
    {
        QFETCH(bool, isElsewhere);
        const QByteArray name(256, 'n');
        QVERIFY(moveFile(here("source"), target(isElsewhere, name.constData())) ==
                std::errc::filename_too_long);
        QCOMPARE(read(here("source")), content);
        QCOMPARE(namesIn(here("")), QStringList{s("source")});
        QCOMPARE(namesIn(elsewhere("")), QStringList());
    }

    void aLinkIsMovedAndNotWhatItLinksTo_data() { addPlaces(); }
    void aLinkIsMovedAndNotWhatItLinksTo()
    {
        QFETCH(bool, isElsewhere);
        QCOMPARE(::symlink("source", pathOf(here("link")).constData()), 0);
        const struct timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
        QCOMPARE(
            ::utimensat(AT_FDCWD, pathOf(here("link")).constData(), times, AT_SYMLINK_NOFOLLOW), 0);
        const QUrl moved = target(isElsewhere, "moved");
        QVERIFY(!moveFile(here("link"), moved));
        char text[16] = {};
        QCOMPARE(::readlink(pathOf(moved).constData(), text, sizeof text), 6);
        QCOMPARE(QByteArray(text), QByteArray("source"));
        QCOMPARE(statusOf(moved).st_mtim.tv_sec, 1'100'000'000);
        QCOMPARE(read(here("source")), content);
        QVERIFY(!namesIn(here("")).contains(s("link")));
    }

    void aPipeIsMovedOnOneFileSystemOnly()
    {
        QCOMPARE(::mkfifo(pathOf(here("pipe")).constData(), 0600), 0);
        QVERIFY(moveFile(here("pipe"), elsewhere("pipe")) == std::errc::cross_device_link);
        QVERIFY(S_ISFIFO(statusOf(here("pipe")).st_mode));
        QVERIFY(!moveFile(here("pipe"), here("moved")));
        QVERIFY(S_ISFIFO(statusOf(here("moved")).st_mode));
    }

    void aFolderIsMovedOnOneFileSystemOnly()
    {
        QVERIFY(QDir().mkdir(here("folder").toLocalFile()));
        write(here("folder/file"), content);
        QVERIFY(moveFile(here("folder"), elsewhere("folder")) == std::errc::cross_device_link);
        QCOMPARE(read(here("folder/file")), content);
        QVERIFY(!moveFile(here("folder"), here("moved")));
        QCOMPARE(read(here("moved/file")), content);
    }

    void aChangeOfCaseAloneIsAMove()
    {
        QVERIFY(!moveFile(here("source"), here("SOURCE")));
        QCOMPARE(namesIn(here("")), QStringList{s("SOURCE")});
    }

    void aSecondNameOfTheFileIsNotReplaced()
    {
        QCOMPARE(::link(pathOf(here("source")).constData(), pathOf(here("SOURCE")).constData()), 0);
        QVERIFY(moveFile(here("source"), here("SOURCE")) == std::errc::file_exists);
        QCOMPARE(namesIn(here("")).size(), 2);
        QCOMPARE(read(here("source")), content);
        QCOMPARE(read(here("SOURCE")), content);
    }

    void aFullDiskLeavesTheSourceAndNothingElse()
    {
        const PrivateMount disk("size=64k");
        if (!disk)
            QSKIP(PrivateMount::unavailable);
        const QUrl folder = FileUrls::fromPath(disk.folder());
        QVERIFY(moveFile(here("source"), FileUrls::child(folder, s("moved"))) ==
                std::errc::no_space_on_device);
        QCOMPARE(read(here("source")), content);
        QCOMPARE(namesIn(folder), QStringList());
    }

    void aSourceThatCantBeRemovedStaysAlone()
    {
        const PrivateMount disk("size=1m");
        if (!disk)
            QSKIP(PrivateMount::unavailable);
        const QUrl source = FileUrls::child(FileUrls::fromPath(disk.folder()), s("source"));
        write(source, content);
        disk.setReadOnly(true);
        QVERIFY(moveFile(source, here("moved")) == std::errc::read_only_file_system);
        QCOMPARE(read(source), content);
        QCOMPARE(namesIn(here("")), QStringList{s("source")});
    }

    void aPoorFileSystemKeepsThePromisesToo_data()
    {
        QTest::addColumn<bool>("isElsewhere");
        QTest::addColumn<bool>("hasHardLinks");
        QTest::newRow("without exclusive rename") << false << true;
        QTest::newRow("without hard links") << false << false;
        QTest::newRow("to one without exclusive rename") << true << true;
        QTest::newRow("to one without hard links") << true << false;
    }

    void aPoorFileSystemKeepsThePromisesToo()
    {
        QFETCH(bool, isElsewhere);
        QFETCH(bool, hasHardLinks);
        const PoorFileSystem poor = {
            .hasExclusiveRename = false, .hasHardLinks = hasHardLinks, .hasNamelessFiles = false};
        const QUrl taken = target(isElsewhere, "taken");
        write(taken, "somebody else's");
        const QUrl linked = target(isElsewhere, "linked");
        QCOMPARE(::symlink("/nowhere", pathOf(linked).constData()), 0);
        std::error_code toTaken;
        std::error_code toLinked;
        std::error_code fromNowhere;
        std::error_code toFree;
        if (!poor.run([&] {
                toTaken = moveFile(here("source"), taken);
                toLinked = moveFile(here("source"), linked);
                fromNowhere = moveFile(here("gone"), target(isElsewhere, "new"));
                toFree = moveFile(here("source"), target(isElsewhere, "free"));
            }))
            QSKIP("the kernel can't refuse calls");
        QVERIFY(toTaken == std::errc::file_exists);
        QCOMPARE(read(taken), QByteArray("somebody else's"));
        QVERIFY(toLinked == std::errc::file_exists);
        QVERIFY(S_ISLNK(statusOf(linked).st_mode));
        QVERIFY(fromNowhere == std::errc::no_such_file_or_directory);
        QVERIFY(!toFree);
        QCOMPARE(read(target(isElsewhere, "free")), content);
        QCOMPARE(namesIn(target(isElsewhere, "")),
                 (QStringList{s("free"), s("linked"), s("taken")}));
        QVERIFY(!FileUrls::exists(here("source")));
    }

    void aFullDiskWithoutNamelessFilesIsLeftCleanToo()
    {
        const PrivateMount disk("size=64k");
        if (!disk)
            QSKIP(PrivateMount::unavailable);
        const QUrl folder = FileUrls::fromPath(disk.folder());
        const PoorFileSystem poor = {.hasNamelessFiles = false};
        std::error_code error;
        if (!poor.run([&] { error = moveFile(here("source"), FileUrls::child(folder, s("new"))); }))
            QSKIP("the kernel can't refuse calls");
        QVERIFY(error == std::errc::no_space_on_device);
        QCOMPARE(read(here("source")), content);
        QCOMPARE(namesIn(folder), QStringList());
    }

    void ofManyWhoWantOneNameOneGetsIt_data() { addPlaces(); }
    void ofManyWhoWantOneNameOneGetsIt()
    {
        QFETCH(bool, isElsewhere);
        constexpr int count = 8;
        for (int i = 0; i < count; ++i)
            write(here(QByteArray::number(i).constData()), QByteArray::number(i));
        const QUrl wanted = target(isElsewhere, "wanted");
        std::array<std::error_code, count> errors;
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < count; ++i)
                threads.emplace_back([this, &errors, &wanted, i] {
                    errors.at(size_t(i)) =
                        moveFile(here(QByteArray::number(i).constData()), wanted);
                });
        }
        int winner = -1;
        for (int i = 0; i < count; ++i) {
            if (!errors.at(size_t(i))) {
                QCOMPARE(winner, -1);
                winner = i;
                continue;
            }
            QVERIFY(errors.at(size_t(i)) == std::errc::file_exists);
            QCOMPARE(read(here(QByteArray::number(i).constData())), QByteArray::number(i));
        }
        QCOMPARE(read(wanted), QByteArray::number(winner));
    }
};

VELMORA_EVENTS_TEST(MoveFileTest)
#include "MoveFileTest.moc"
