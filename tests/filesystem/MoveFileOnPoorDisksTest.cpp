// SPDX-License-Identifier: MIT
#include "filesystem/moveFile.h"

#include "tests/filesystem/MoveFileFixture.h"
#include "tests/filesystem/PoorFileSystem.h"
#include "tests/world/PrivateMount.h"
#include "tests/world/TestProgram.h"

#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

/// The same promises on disks that are full or read-only, or that lack what a move is made of.
class MoveFileOnPoorDisksTest : public QObject, private MoveFileFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }

    void aFullDiskLeavesTheSourceAndNothingElse()
    {
        const PrivateMount disk("size=64k");
        if (!disk)
            QSKIP(PrivateMount::unavailable);
        const QUrl folder = FileUrls::fromPath(disk.folder());
        QVERIFY(moveFile(here("source"), FileUrls::child(folder, u"moved"_s)) ==
                std::errc::no_space_on_device);
        QCOMPARE(read(here("source")), content);
        QCOMPARE(namesIn(folder), QStringList());
    }

    void aSourceThatCantBeRemovedStaysAlone()
    {
        const PrivateMount disk("size=1m");
        if (!disk)
            QSKIP(PrivateMount::unavailable);
        const QUrl source = FileUrls::child(FileUrls::fromPath(disk.folder()), u"source"_s);
        write(source, content);
        disk.setReadOnly(true);
        QVERIFY(moveFile(source, here("moved")) == std::errc::read_only_file_system);
        QCOMPARE(read(source), content);
        QCOMPARE(namesIn(here("")), QStringList{u"source"_s});
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
                 (QStringList{u"free"_s, u"linked"_s, u"taken"_s}));
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
        if (!poor.run([&] { error = moveFile(here("source"), FileUrls::child(folder, u"new"_s)); }))
            QSKIP("the kernel can't refuse calls");
        QVERIFY(error == std::errc::no_space_on_device);
        QCOMPARE(read(here("source")), content);
        QCOMPARE(namesIn(folder), QStringList());
    }
};

VELMORA_EVENTS_TEST(MoveFileOnPoorDisksTest)
#include "MoveFileOnPoorDisksTest.moc"
