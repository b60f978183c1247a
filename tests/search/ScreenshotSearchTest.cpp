// SPDX-License-Identifier: MIT
#include "tests/search/ScreenshotSearchFixture.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QMutex>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What the search keeps, and how it follows what happens to the files.
class ScreenshotSearchTest : public QObject, private ScreenshotSearchFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

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

    void aListingThatEndsAfterAllIsForgottenStoresNothing()
    {
        picture(u"a.png"_s, 41);
        QMutexLocker slow(m_listing.get());
        m_search->keepTexts();
        QVERIFY(m_search->forgetTexts().result());
        slow.unlock();
        QVERIFY(Waiting::staysTrue([this] { return stored().isEmpty(); }, 1000ms));
        QCOMPARE(m_recognizer->begun, 0);
    }
};

VELMORA_EVENTS_TEST(ScreenshotSearchTest)
#include "ScreenshotSearchTest.moc"
