// SPDX-License-Identifier: MIT
#include "search/ScreenshotSearch.h"

#include "imaging/PictureBudget.h"
#include "tests/fakes/FakePowerSource.h"
#include "tests/fakes/FakeTextRecognizer.h"
#include "tests/files/TestFiles.h"
#include "tests/world/BusyProcessor.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QTest>

#include <memory>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

using Place = SearchIndex::Place;

constexpr int patience = 20'000;

QStringList textOf(const QImage &picture)
{
    return {u"page of width %1"_s.arg(picture.width())};
}

std::optional<QList<QUrl>> picturesIn(const QUrl &folder)
{
    QList<QUrl> urls;
    const QDir listed(folder.toLocalFile());
    for (const QString &name : listed.entryList({u"*.png"_s}, QDir::Files, QDir::Time))
        urls << FileUrls::child(folder, name);
    return urls;
}

} // namespace

/// The search as the program uses it, on real files, with a recogniser that the test controls.
class ScreenshotSearchTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<QTemporaryDir> m_data;
    std::shared_ptr<FakeTextRecognizer> m_recognizer;
    std::shared_ptr<FakePowerSource> m_power;
    const std::shared_ptr<PictureBudget> m_budget =
        std::make_shared<PictureBudget>(PictureBudget::ofScreenshots);
    bool m_isBusy = false;
    std::unique_ptr<ScreenshotSearch> m_search;

    QUrl picture(const QString &name, int width) const
    {
        const QUrl url = m_files->url(name);
        QImage image(width, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        if (!image.save(url.toLocalFile(), "png"))
            qFatal("can't write a picture");
        return url;
    }
    QUrl move(const QUrl &from, const QString &name, Place place) const
    {
        const QUrl to = m_files->url(name);
        if (!QFile::rename(from.toLocalFile(), to.toLocalFile()))
            qFatal("can't rename");
        m_search->moved(from, to, place);
        return to;
    }
    void start()
    {
        m_search = std::make_unique<ScreenshotSearch>(
            ScreenshotSearch::Services{m_recognizer, m_power, m_budget, picturesIn,
                                       [this] { return m_isBusy; }},
            m_data->filePath(u"velmora"_s));
        m_search->setFolder(m_files->folder());
    }
    QStringList found(const QString &words) const
    {
        QStringList names;
        for (const SearchHit &hit : m_search->find(words, 50).result())
            names << FileUrls::lastPathComponent(hit.url);
        names.sort();
        return names;
    }
    int read() const { return m_search->progress().result().read; }
    QStringList stored() const
    {
        return QDir(m_data->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<TestFiles>();
        m_data = std::make_unique<QTemporaryDir>();
        m_recognizer = std::make_shared<FakeTextRecognizer>(textOf);
        m_power = std::make_shared<FakePowerSource>();
        m_isBusy = false;
        start();
    }

    void cleanup() { m_search.reset(); }

    void nothingIsStoredOrReadBeforeTheUserAgrees()
    {
        const QUrl url = picture(u"harvest-festival.png"_s, 40);
        m_search->arrived(url, u"Gazette"_s);
        m_search->moved(url, url, Place::Folder);
        QCOMPARE(found(u"festival"_s), QStringList{u"harvest-festival.png"_s});
        QVERIFY(found(u"gazette"_s).isEmpty());
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 0; }, 500ms));
        QCOMPARE(stored(), QStringList());
    }

    void allScreenshotsOfTheFolderAreReadWhenTheUserHasAgreed()
    {
        picture(u"a.png"_s, 41);
        picture(u"b.png"_s, 42);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(read(), 2, patience);
        QCOMPARE(found(u"page"_s), QStringList({u"a.png"_s, u"b.png"_s}));
        QCOMPARE(m_search->find(u"42 width"_s, 5).result().value(0).line, u"page of width 42"_s);
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 2; }, 500ms));
    }

    void whatWasReadIsNotReadAgainAfterARestart()
    {
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(read(), 1, patience);
        m_search.reset();
        picture(u"b.png"_s, 42);
        start();
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(read(), 2, patience);
        QCOMPARE(m_recognizer->begun, 2);
    }

    void aNewScreenshotIsReadWhenItHasItsNameAndIsFoundByItsApplication()
    {
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(m_search->progress().result().all, 0, patience);
        m_isBusy = true;
        const QUrl url = picture(u"new.png"_s, 43);
        m_search->arrived(url, u"Gazette"_s);
        m_search->lookAgain();
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 0; }, 4000ms));
        move(url, u"named.png"_s, Place::Folder);
        m_isBusy = false;
        QTRY_COMPARE_WITH_TIMEOUT(found(u"gazette 43"_s), QStringList{u"named.png"_s}, patience);
    }

    void whatIsBeingReadGivesWayToANewScreenshot()
    {
        m_recognizer->hold();
        picture(u"old.png"_s, 41);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(m_recognizer->begun, 1, patience);
        m_isBusy = true;
        m_search->arrived(picture(u"new.png"_s, 42), {});
        QTRY_COMPARE_WITH_TIMEOUT(m_recognizer->abandoned, 1, patience);
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 1; }, 500ms));
        m_recognizer->letRead();
        m_isBusy = false;
        QTRY_COMPARE_WITH_TIMEOUT(read(), 2, patience);
    }

    void aLowBatteryIsLeftAlone()
    {
        m_power->level = BackgroundReader::leastBattery - 1;
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_VERIFY_WITH_TIMEOUT(m_power->asked > 0, patience);
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 0; }, 500ms));
        QCOMPARE(found(u"a"_s), QStringList{u"a.png"_s});
    }

    void nothingIsReadWhileOtherPicturesNeedTheMemory()
    {
        const auto others = m_budget->reserve(m_budget->total());
        QVERIFY(others);
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_VERIFY_WITH_TIMEOUT(m_power->asked > 0, patience);
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 0; }, 500ms));
        QCOMPARE(found(u"a"_s), QStringList{u"a.png"_s});
    }

    void theIndexFollowsRenamesTheTrashAndUndo()
    {
        const QUrl first = picture(u"first.png"_s, 41);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(read(), 1, patience);
        const QUrl second = move(first, u"second.png"_s, Place::Folder);
        QCOMPARE(found(u"width 41"_s), QStringList{u"second.png"_s});
        const QUrl trashed = move(second, u"in-trash"_s, Place::Trash);
        QVERIFY(found(u"width 41"_s).isEmpty());
        move(trashed, u"second.png"_s, Place::Folder);
        QCOMPARE(found(u"width second"_s), QStringList{u"second.png"_s});
        QVERIFY(Waiting::staysTrue([this] { return m_recognizer->begun == 1; }, 500ms));
    }

    void whatOthersRenameIsFoundWhenSomebodyBeginsToSearch()
    {
        const QUrl first = picture(u"first.png"_s, 41);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(read(), 1, patience);
        QVERIFY(QFile::rename(first.toLocalFile(), m_files->url(u"else.png"_s).toLocalFile()));
        QVERIFY(found(u"41"_s).isEmpty());
        m_search->lookAgain();
        QTRY_COMPARE_WITH_TIMEOUT(found(u"41"_s), QStringList{u"else.png"_s}, patience);
        QCOMPARE(m_recognizer->begun, 1);
    }

    void aDamagedDatabaseIsReadAnew()
    {
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(read(), 1, patience);
        m_search.reset();
        TestFiles::write(FileUrls::fromPath(m_data->filePath(u"velmora/search.db"_s)),
                         QByteArray(9000, 'x'));
        start();
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(found(u"width 41"_s), QStringList{u"a.png"_s}, patience);
    }

    void forgettingDeletesEverythingAndNothingComesBack()
    {
        m_recognizer->hold();
        picture(u"a.png"_s, 41);
        picture(u"b.png"_s, 42);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(m_recognizer->begun, 1, patience);
        QCOMPARE(stored(), QStringList{u"velmora"_s});
        const QFuture<bool> forgotten = m_search->forgetTexts();
        m_recognizer->letRead();
        QVERIFY(forgotten.result());
        const auto isEmpty = [this] {
            return QDir(m_data->filePath(u"velmora"_s)).entryList(QDir::Files).isEmpty();
        };
        QVERIFY(Waiting::staysTrue(isEmpty, 500ms));
        QCOMPARE(m_recognizer->begun, 1);
        QVERIFY(found(u"width"_s).isEmpty());
        QCOMPARE(found(u"a"_s), QStringList{u"a.png"_s});
    }

    void theEndDoesNotWaitForAPageToBeRead()
    {
        m_recognizer->hold();
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_COMPARE_WITH_TIMEOUT(m_recognizer->begun, 1, patience);
        m_search.reset();
        QTRY_COMPARE_WITH_TIMEOUT(m_recognizer->abandoned, 1, patience);
    }

    void theEndDoesNotWaitForAThreadThatGetsNoProcessorTime()
    {
        const BusyProcessor busy;
        std::atomic_bool isStarved = false;
        const auto readSlowly = [&](const QImage &) {
            busy.bindThread();
            isStarved = true;
            // As long as a line takes.
            const auto cpuTime = [] {
                timespec time = {};
                ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
                return time.tv_sec * 1000 + time.tv_nsec / 1'000'000;
            };
            for (const auto end = cpuTime() + 100; cpuTime() < end;)
                ;
            return QStringList();
        };
        m_recognizer = std::make_shared<FakeTextRecognizer>(readSlowly);
        start();
        picture(u"a.png"_s, 41);
        m_search->keepTexts();
        QTRY_VERIFY_WITH_TIMEOUT(isStarved, 60'000);
        QElapsedTimer timer;
        timer.start();
        m_search.reset();
        QVERIFY2(timer.elapsed() < 10'000, qPrintable(QString::number(timer.elapsed())));
    }
};

VELMORA_EVENTS_TEST(ScreenshotSearchTest)
#include "ScreenshotSearchTest.moc"
