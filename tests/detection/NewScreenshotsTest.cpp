// SPDX-License-Identifier: MIT
#include "detection/NewScreenshots.h"

#include "filesystem/FileUrls.h"
#include "tests/world/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

const FileTime startedAt{1'000'000'000s};

struct Dated {
    const char *name;
    FileTime modified;
};

QUrl urlOf(const char *name)
{
    return QUrl::fromLocalFile(u"/Shots/"_s + QString::fromUtf8(name));
}

FolderListing::Files files(std::initializer_list<Dated> list)
{
    FolderListing::Files result;
    for (const auto &[name, modified] : list)
        result.insert(name, {urlOf(name), modified, modified});
    return result;
}

FolderListing::Files files(std::initializer_list<const char *> names)
{
    FolderListing::Files result;
    for (const char *name : names)
        result.insert(name, {urlOf(name), startedAt, startedAt});
    return result;
}

QString joined(const QList<QUrl> &urls)
{
    QStringList names;
    for (const QUrl &url : urls)
        names.append(FileUrls::lastPathComponent(url));
    return names.join(u' ');
}

} // namespace

class NewScreenshotsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsThereAtTheStartIsKnown()
    {
        NewScreenshots screenshots(startedAt);
        screenshots.start(files({"a.png"}));
        QCOMPARE(joined(screenshots.scan(files({"a.png", "b.png"}))), u"b.png"_s);
        QCOMPARE(joined(screenshots.scan(files({"a.png", "b.png"}))), QString());
    }

    void whatCameDuringAStartThatNobodyWaitedForIsNew()
    {
        NewScreenshots screenshots(startedAt);
        const auto present = files({{"before.png", startedAt - 1ns}, {"after.png", startedAt}});
        screenshots.start(present, startedAt);
        QCOMPARE(joined(screenshots.scan(present)), u"after.png"_s);
    }

    void aFileIsNewAlsoAfterTheClockWasSetBack()
    {
        NewScreenshots screenshots(startedAt);
        screenshots.start(files({"old.png"}));
        const FileTime corrected = startedAt - 2h;
        screenshots.noteTime(corrected);
        const auto present = files({{"old.png", startedAt},
                                    {"older.png", corrected - 2500ms},
                                    {"new.png", corrected + 1s}});
        QCOMPARE(joined(screenshots.scan(present)), u"new.png"_s);
        screenshots.noteTime(startedAt);
        QCOMPARE(joined(screenshots.scan(present)), QString());
    }

    void aFileOlderThanTheGraceIsNotNew()
    {
        NewScreenshots screenshots(startedAt);
        screenshots.start({});
        QCOMPARE(joined(screenshots.scan(files({{"a.png", startedAt - 1500ms},
                                                {"b.png", startedAt - 2500ms},
                                                {"c.png", startedAt - 2s},
                                                {"d.png", startedAt - 2s - 1ns}}))),
                 u"a.png c.png"_s);
    }

    void theNewComeInTheOrderOfTheirNamesCodePoints()
    {
        NewScreenshots screenshots(startedAt);
        screenshots.start({});
        // U+FF5E sorts before U+1F4F7, but not in UTF-16.
        QCOMPARE(
            joined(screenshots.scan(files({"b.png", "Z.png", "\U0001F4F7.png", "a.png",
                                           "\uFF5E.png", "é.png", "Shot 10.png", "Shot 9.png"}))),
            QString::fromUtf8("Shot 10.png Shot 9.png Z.png a.png b.png é.png \uFF5E.png "
                              "\U0001F4F7.png"));
    }

    void anIgnoredFileIsNeverNew()
    {
        NewScreenshots screenshots(startedAt);
        screenshots.start({});
        screenshots.ignore(QUrl::fromLocalFile(u"/Shots/./ours.png"_s));
        QCOMPARE(joined(screenshots.scan(files({"ours.png", "theirs.png"}))), u"theirs.png"_s);
        QCOMPARE(joined(screenshots.scan({})), QString());
        QCOMPARE(joined(screenshots.scan(files({"ours.png"}))), QString());
    }

    void aFileThatWasReportedAndThenIgnoredIsNotNewAgain()
    {
        NewScreenshots screenshots(startedAt);
        screenshots.start({});
        QCOMPARE(joined(screenshots.scan(files({"a.png"}))), u"a.png"_s);
        screenshots.ignore(urlOf("a.png"));
        QCOMPARE(joined(screenshots.scan({})), QString());
        QCOMPARE(joined(screenshots.scan(files({"a.png"}))), QString());
    }

    void aFileThatLeftAndReturnedIsNewAgain()
    {
        NewScreenshots screenshots(startedAt);
        screenshots.start({});
        QCOMPARE(joined(screenshots.scan(files({"a.png"}))), u"a.png"_s);
        QCOMPARE(joined(screenshots.scan({})), QString());
        QCOMPARE(joined(screenshots.scan(files({"a.png"}))), u"a.png"_s);
    }

    void aKnownFileFromBeforeTheStartThatIsModifiedIsNew()
    {
        NewScreenshots screenshots(startedAt);
        const auto old = files({{"a.png", startedAt - 1min}});
        screenshots.start(old);
        QCOMPARE(joined(screenshots.scan(old)), QString());
        QCOMPARE(joined(screenshots.scan(files({{"a.png", startedAt + 1s}}))), u"a.png"_s);
    }
};

VELMORA_EVENTS_TEST(NewScreenshotsTest)
#include "NewScreenshotsTest.moc"
