// SPDX-License-Identifier: MIT
#include "filesystem/moveFile.h"

#include "tests/filesystem/MoveFileFixture.h"
#include "tests/world/TestProgram.h"

#include <QTest>

#include <array>
#include <fcntl.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

/// Tests each promise within one file system and between two.
class MoveFileTest : public QObject, private MoveFileFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void theFileIsThereAndNoMoreHere_data() { addPlaces(); }
    void theFileIsThereAndNoMoreHere()
    {
        QFETCH(bool, isElsewhere);
        QVERIFY(!moveFile(here("source"), target(isElsewhere, "moved")));
        QCOMPARE(read(target(isElsewhere, "moved")), content);
        QVERIFY(!FileUrls::exists(here("source")));
        QCOMPARE(namesIn(target(isElsewhere, "")), QStringList{u"moved"_s});
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
        QCOMPARE(namesIn(target(isElsewhere, "")).filter(u"velmora"_s), QStringList());
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
        QVERIFY(!QFile::exists(u"/nowhere"_s));
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
        QCOMPARE(namesIn(here("")), QStringList{u"source"_s});
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
        QVERIFY(!namesIn(here("")).contains(u"link"_s));
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
        QCOMPARE(namesIn(here("")), QStringList{u"SOURCE"_s});
    }

    void aSecondNameOfTheFileIsNotReplaced()
    {
        QCOMPARE(::link(pathOf(here("source")).constData(), pathOf(here("SOURCE")).constData()), 0);
        QVERIFY(moveFile(here("source"), here("SOURCE")) == std::errc::file_exists);
        QCOMPARE(namesIn(here("")).size(), 2);
        QCOMPARE(read(here("source")), content);
        QCOMPARE(read(here("SOURCE")), content);
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
