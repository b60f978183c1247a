// SPDX-License-Identifier: MIT
#include "detection/FolderListing.h"

#include "tests/detection/FolderActions.h"
#include "tests/world/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using FolderActions::moveIn;
using FolderActions::setDate;
using FolderActions::write;

/// Time is simulated: files get dates around noon of a day long ago.
class FolderListingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_folder = m_directory->path() + u"/Shots"_s;
        QVERIFY(QDir().mkdir(m_folder));
        m_listing = std::make_unique<FolderListing>(QUrl::fromLocalFile(m_folder));
    }

    void imagesAreKnownByTheirExtension()
    {
        for (const char *name :
             {"a.png", "b.JPG", "c.jpeg", "d.Heic", "e.tiff", "f.tif", "g.gif", "h", "i.png.part",
              "j.pngx", ".k.png", ".png", "png", "l.", "m.png ", "n .png"})
            QVERIFY(moveIn(path(name), m_noon));
        QVERIFY(m_listing->look(m_noon));
        QCOMPARE(candidates(), u"a.png b.JPG c.jpeg d.Heic e.tiff n .png"_s);
        QVERIFY(!m_listing->look(m_noon));
    }

    void aFileIsACandidateUntilItIsThreeMinutesOld()
    {
        QVERIFY(moveIn(path("a.png"), m_noon));
        follow();
        QVERIFY(m_listing->look(m_noon + 180s - 1ns));
        QCOMPARE(candidates(), u"a.png"_s);
        QVERIFY(m_listing->look(m_noon + 180s));
        QCOMPARE(candidates(), QString());
        QVERIFY(!m_listing->look(m_noon + 181s));
        m_listing->setReported(false);
        QVERIFY(m_listing->look(m_noon + 180s - 1ns));
        QCOMPARE(candidates(), u"a.png"_s);
        QVERIFY(m_listing->look(m_noon + 180s));
        QCOMPARE(candidates(), QString());
    }

    void aDateInTheFutureIsRecent()
    {
        QVERIFY(moveIn(path("a.png"), m_noon + 24h));
        follow();
        QVERIFY(m_listing->look(m_noon));
        QCOMPARE(candidates(), u"a.png"_s);
        QVERIFY(!m_listing->look(m_noon + 24h));
        QVERIFY(m_listing->look(m_noon + 24h + 180s));
        QCOMPARE(candidates(), QString());
    }

    void datesBeyondAllReasonAreOldOrFuture()
    {
        QVERIFY(moveIn(path("a.png"), FileTime(-2'000'000'000s)));
        QVERIFY(moveIn(path("b.png"), FileTime(9'000'000'000s)));
        m_listing->look(m_noon);
        QCOMPARE(candidates(), u"b.png"_s);
        QVERIFY(!m_listing->look(m_noon + 24h));
    }

    void inAFollowedFolderOnlyReportedEntriesAreRead()
    {
        follow();
        m_listing->look(m_noon);
        QVERIFY(moveIn(path("untold.png"), m_noon));
        QVERIFY(moveIn(path("told.png"), m_noon));
        QVERIFY(!m_listing->look(m_noon));
        QCOMPARE(candidates(), QString());
        m_listing->entriesChanged({u"told.png"_s, u"missing.png"_s});
        QVERIFY(m_listing->look(m_noon));
        QCOMPARE(candidates(), u"told.png"_s);
        m_listing->listAgain();
        QVERIFY(m_listing->look(m_noon));
        QCOMPARE(candidates(), u"told.png untold.png"_s);
    }

    void aFileThatBecomesRecentAgainIsACandidateAgain()
    {
        QVERIFY(moveIn(path("a.png"), m_noon));
        follow();
        m_listing->look(m_noon + 1h);
        QCOMPARE(candidates(), QString());
        QVERIFY(setDate(path("a.png"), m_noon + 1h));
        m_listing->entriesChanged({u"a.png"_s});
        QVERIFY(m_listing->look(m_noon + 1h));
        QCOMPARE(candidates(), u"a.png"_s);
    }

    void anotherDateIsAnotherOutcome()
    {
        QVERIFY(moveIn(path("a.png"), m_noon));
        follow();
        QVERIFY(m_listing->look(m_noon));
        m_listing->entriesChanged({u"a.png"_s});
        QVERIFY(!m_listing->look(m_noon));
        QVERIFY(setDate(path("a.png"), m_noon + 1ns));
        m_listing->entriesChanged({u"a.png"_s});
        QVERIFY(m_listing->look(m_noon));
        QVERIFY(setDate(path("a.png"), m_noon + 2ns));
        m_listing->listAgain();
        QVERIFY(m_listing->look(m_noon));
    }

    void aFoldersDateFollowsItsContentThoughNoOneTells()
    {
        QVERIFY(QDir().mkdir(path("a.png")));
        QVERIFY(setDate(path("a.png"), m_noon - 1h));
        follow();
        m_listing->look(m_noon);
        QCOMPARE(candidates(), QString());
        QVERIFY(write(path("a.png/inside")));
        m_listing->look(m_noon);
        QCOMPARE(candidates(), u"a.png"_s);
    }

    void aFileWrittenThroughAnotherNameIsSeenThoughNoOneTells()
    {
        const QString outside = m_directory->path() + u"/outside"_s;
        QVERIFY(moveIn(outside, m_noon - 1h));
        QVERIFY(FolderActions::link(outside, path("a.png")));
        follow();
        m_listing->look(m_noon);
        QCOMPARE(candidates(), QString());
        QVERIFY(setDate(outside, m_noon));
        QVERIFY(m_listing->look(m_noon));
        QCOMPARE(candidates(), u"a.png"_s);
    }

    void aFileThatIsGivenASecondNameHereIsSeenUnderBoth()
    {
        QVERIFY(moveIn(path("a.png"), m_noon - 1h));
        follow();
        m_listing->look(m_noon);
        QVERIFY(FolderActions::link(path("a.png"), path("b.txt")));
        m_listing->entriesChanged({u"b.txt"_s});
        m_listing->look(m_noon);
        QVERIFY(setDate(path("b.txt"), m_noon));
        m_listing->entriesChanged({u"b.txt"_s});
        m_listing->look(m_noon);
        QCOMPARE(candidates(), u"a.png"_s);
    }

    void anotherFileUnderALinkedNameIsSeenUnderAllItsNames()
    {
        const QString outside = m_directory->path() + u"/outside"_s;
        QVERIFY(moveIn(path("a.png"), m_noon - 1h));
        QVERIFY(FolderActions::link(path("a.png"), outside));
        QVERIFY(moveIn(path("b.png"), m_noon - 1h));
        follow();
        m_listing->look(m_noon);
        // Now a.png and b.png are the same file, and only the rename is reported.
        QVERIFY(QFile::remove(outside));
        QVERIFY(FolderActions::link(path("b.png"), outside));
        QVERIFY(FolderActions::rename(outside, path("a.png")));
        m_listing->entriesChanged({u"a.png"_s});
        m_listing->look(m_noon);
        QVERIFY(setDate(path("a.png"), m_noon));
        m_listing->entriesChanged({u"a.png"_s});
        m_listing->look(m_noon);
        QCOMPARE(candidates(), u"a.png b.png"_s);
    }

    void manyFilesWithSeveralNamesAreSeenInTurn()
    {
        const QString outside = m_directory->path() + u"/outside"_s;
        QVERIFY(moveIn(outside, m_noon - 1h));
        constexpr int count = 1000;
        for (int i = 0; i < count; ++i)
            QVERIFY(FolderActions::link(outside, path(qPrintable(u"%1.png"_s.arg(i)))));
        follow();
        m_listing->look(m_noon);
        QVERIFY(setDate(outside, m_noon));
        for (int looks = 0; looks < 20; ++looks)
            QVERIFY(m_listing->look(m_noon));
        QCOMPARE(m_listing->candidates().size(), count);
        QVERIFY(!m_listing->look(m_noon));
    }

    void aCandidateWithALaterDateThatWasNotReportedStays()
    {
        QVERIFY(moveIn(path("a.png"), m_noon));
        follow();
        m_listing->look(m_noon);
        QVERIFY(setDate(path("a.png"), m_noon + 1min));
        QVERIFY(m_listing->look(m_noon + 180s));
        QCOMPARE(candidates(), u"a.png"_s);
        QVERIFY(m_listing->look(m_noon + 240s));
        QCOMPARE(candidates(), QString());
    }

    void aClockThatIsSetBackMakesCandidatesAnew()
    {
        QVERIFY(moveIn(path("a.png"), m_noon));
        follow();
        m_listing->look(m_noon + 1h);
        QCOMPARE(candidates(), QString());
        QVERIFY(m_listing->look(m_noon + 1min));
        QCOMPARE(candidates(), u"a.png"_s);
    }

    void aLinkIsJudgedByItsOwnDate()
    {
        QVERIFY(moveIn(path("target"), m_noon));
        QVERIFY(FolderActions::symlink(path("target"), path("old.png")));
        QVERIFY(setDate(path("old.png"), m_noon - 1h));
        QVERIFY(FolderActions::symlink(u"/nowhere"_s, path("new.png")));
        QVERIFY(setDate(path("new.png"), m_noon));
        m_listing->look(m_noon);
        QCOMPARE(candidates(), u"new.png"_s);
    }

    void whereNothingIsReportedTheFolderIsListedWhenItHasMovedAndElseSeldom()
    {
        // Listing takes a millisecond or more, so the next listing is due a tenth of a second
        // later.
        for (int i = 0; i < 3000; ++i)
            QVERIFY(FolderActions::writeRaw(QFile::encodeName(m_folder + u"/%1.png"_s.arg(i))));
        QVERIFY(moveIn(path("old.png"), m_noon - 1h));
        m_listing->look(m_noon);
        QVERIFY(moveIn(path("new.png"), m_noon));
        QVERIFY(m_listing->look(m_noon));
        QVERIFY(m_listing->candidates().contains("new.png"));

        QVERIFY(setDate(path("old.png"), m_noon));
        QVERIFY(!m_listing->look(m_noon));
        QVERIFY(QTest::qWaitFor([this] { return m_listing->look(m_noon); }));
        QVERIFY(m_listing->candidates().contains("old.png"));
    }

    void aFolderThatCantBeListedHoldsNothingUntilItCan()
    {
        QVERIFY(moveIn(path("a.png"), m_noon));
        follow();
        m_listing->look(m_noon);
        const QString away = m_directory->path() + u"/away"_s;
        QVERIFY(QDir().rename(m_folder, away));
        m_listing->listAgain();
        QVERIFY(m_listing->look(m_noon));
        QCOMPARE(candidates(), QString());
        QVERIFY(!m_listing->look(m_noon));
        QVERIFY(QDir().rename(away, m_folder));
        QVERIFY(m_listing->look(m_noon));
        QCOMPARE(candidates(), u"a.png"_s);
    }

    void aNameThatIsNotUtf8IsNoCandidate()
    {
        QVERIFY(FolderActions::writeRaw(QFile::encodeName(m_folder) + "/bad\xff.png"));
        m_listing->look(FileTimes::now());
        QCOMPARE(candidates(), QString());
    }

    void theUrlIsStandardised()
    {
        QVERIFY(moveIn(path("a%20#.png"), m_noon));
        FolderListing listing(QUrl::fromLocalFile(m_folder + u"/../Shots/"_s));
        listing.look(m_noon);
        QCOMPARE(listing.candidates().value("a%20#.png").url,
                 QUrl::fromLocalFile(path("a%20#.png")));
    }

private:
    QString path(const char *name) const { return m_folder + u'/' + QString::fromUtf8(name); }

    void follow() { m_listing->setReported(true); }

    QString candidates() const
    {
        QStringList names;
        for (const QByteArray &name : m_listing->candidates().keys())
            names.append(QString::fromUtf8(name));
        names.sort();
        return names.join(u' ');
    }

    const FileTime m_noon{1'000'000'000s};
    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_folder;
    std::unique_ptr<FolderListing> m_listing;
};

VELMORA_EVENTS_TEST(FolderListingTest)
#include "FolderListingTest.moc"
