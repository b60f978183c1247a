// SPDX-License-Identifier: MIT
#include "detection/ScreenshotFolder.h"

#include "detection/ScreenshotFolderResolver.h"
#include "tests/detection/FolderActions.h"
#include "tests/detection/RememberedPreferences.h"
#include "tests/world/TestProgram.h"
#include "tests/world/Waiting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <mutex>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// Preferences of a slow system, which other programs change in the meantime.
class SlowPreferences : public RememberedPreferences
{
public:
    std::optional<QString> location() const override
    {
        ++reads;
        if (isSlow)
            released.acquire();
        const std::lock_guard lock(m_lock);
        return storedLocation;
    }

    void change(const QString &path)
    {
        {
            const std::lock_guard lock(m_lock);
            storedLocation = path;
        }
        Q_EMIT changed();
    }

    std::atomic_bool isSlow = false;
    mutable std::atomic_int reads = 0;
    mutable QSemaphore released;

private:
    mutable std::mutex m_lock;
};

QUrl url(const QString &path)
{
    return QUrl::fromLocalFile(path);
}

} // namespace

class ScreenshotFolderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theAnswerIsThatOfTheSystem()
    {
        SlowPreferences preferences;
        preferences.storedLocation = u"/srv/shots/"_s;
        ScreenshotFolder folder(preferences);
        QCOMPARE(folder.current(), url(u"/srv/shots"_s));
    }

    void itIsReadOnceHoweverOftenItIsAskedFor()
    {
        SlowPreferences preferences;
        preferences.storedLocation = u"/srv/shots"_s;
        ScreenshotFolder folder(preferences);
        for (int i = 0; i < 100; ++i)
            QCOMPARE(folder.current(), url(u"/srv/shots"_s));
        QVERIFY(Waiting::staysTrue([&] { return preferences.reads == 1; }, 100ms));
    }

    void aSlowSystemKeepsNobodyWaitingAndIsHeardLater()
    {
        SlowPreferences preferences;
        preferences.storedLocation = u"/srv/shots"_s;
        preferences.isSlow = true;
        ScreenshotFolder folder(preferences);
        const QSignalSpy changes(&folder, &ScreenshotFolder::changed);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(folder.current(), url(QDir::homePath() + u"/Desktop"_s));
        QVERIFY(timer.elapsed() < 1000);
        preferences.isSlow = false;
        preferences.released.release();
        QTRY_COMPARE(changes.size(), 1);
        QCOMPARE(changes.at(0).at(0).toUrl(), url(u"/srv/shots"_s));
        QCOMPARE(folder.current(), url(u"/srv/shots"_s));
    }

    void aSystemThatNeverAnswersDoesNotHoldUpTheEnd()
    {
        SlowPreferences preferences;
        preferences.isSlow = true;
        QElapsedTimer timer;
        {
            ScreenshotFolder folder(preferences);
            QTRY_COMPARE(preferences.reads, 1);
            timer.start();
        }
        QVERIFY(timer.elapsed() < 5000);
        preferences.isSlow = false;
        preferences.released.release();
        // The abandoned thread is still reading.
        Waiting::letPass(100ms);
    }

    void changesOfTheSettingsAreFollowed()
    {
        SlowPreferences preferences;
        preferences.storedLocation = u"/srv/one"_s;
        ScreenshotFolder folder(preferences);
        QCOMPARE(folder.current(), url(u"/srv/one"_s));
        const QSignalSpy changes(&folder, &ScreenshotFolder::changed);
        preferences.change(u"/srv/two"_s);
        preferences.change(u"/srv/three"_s);
        QTRY_COMPARE(folder.current(), url(u"/srv/three"_s));
        const qsizetype reported = changes.size();
        QVERIFY(reported >= 1);
        preferences.change(u"/srv/three"_s);
        QVERIFY(Waiting::staysTrue([&] { return changes.size() == reported; }, 100ms));
    }

    void whatIsNoFolderIsNoFirstAnswerEither()
    {
        const QTemporaryDir directory;
        const QString file = directory.filePath(u"shot.png"_s);
        QVERIFY(FolderActions::write(file));
        SlowPreferences preferences;
        preferences.storedLocation = file;
        ScreenshotFolder folder(preferences);
        QCOMPARE(folder.current(), ScreenshotFolderResolver::defaultFolder());
    }

    void whatIsNoFolderIsNoAnswer()
    {
        const QTemporaryDir directory;
        const QString file = directory.filePath(u"shot.png"_s);
        QVERIFY(FolderActions::write(file));
        SlowPreferences preferences;
        preferences.storedLocation = directory.path();
        ScreenshotFolder folder(preferences);
        QCOMPARE(folder.current(), url(directory.path()));
        const QSignalSpy changes(&folder, &ScreenshotFolder::changed);
        preferences.change(file);
        QTRY_COMPARE(preferences.reads, 2);
        QVERIFY(Waiting::staysTrue([&] { return changes.isEmpty(); }, 100ms));
        QCOMPARE(folder.current(), url(directory.path()));
        // A missing folder may appear later.
        const QString missing = directory.filePath(u"missing"_s);
        preferences.change(missing);
        QTRY_COMPARE(folder.current(), url(missing));
    }

    void aChosenFolderIsStoredAndIsTheAnswerAtOnce()
    {
        SlowPreferences preferences;
        preferences.storedLocation = u"/srv/one"_s;
        ScreenshotFolder folder(preferences);
        const QSignalSpy changes(&folder, &ScreenshotFolder::changed);
        QCOMPARE(folder.current(), url(u"/srv/one"_s));
        folder.choose(url(u"/srv/chosen/"_s));
        QCOMPARE(folder.current(), url(u"/srv/chosen"_s));
        QCOMPARE(preferences.storedLocation, u"/srv/chosen"_s);
        QVERIFY(Waiting::staysTrue([&] { return changes.isEmpty(); }, 100ms));
        QCOMPARE(folder.current(), url(u"/srv/chosen"_s));
        folder.choose(QUrl(u"smb://server/share"_s));
        QCOMPARE(folder.current(), url(u"/srv/chosen"_s));
    }

    void whatWasReadBeforeAChoiceDoesNotUndoIt()
    {
        SlowPreferences preferences;
        preferences.storedLocation = u"/srv/one"_s;
        ScreenshotFolder folder(preferences);
        QCOMPARE(folder.current(), url(u"/srv/one"_s));
        QVERIFY(Waiting::settles([&] { return preferences.reads.load(); }, 50ms));
        preferences.isSlow = true;
        preferences.change(u"/srv/two"_s);
        QTRY_COMPARE(preferences.reads, 2);
        const QSignalSpy changes(&folder, &ScreenshotFolder::changed);
        folder.choose(url(u"/srv/chosen"_s));
        preferences.isSlow = false;
        preferences.released.release();
        QTRY_COMPARE(preferences.reads, 3);
        QVERIFY(Waiting::staysTrue([&] { return changes.isEmpty(); }, 100ms));
        QCOMPARE(folder.current(), url(u"/srv/chosen"_s));
    }
};

VELMORA_EVENTS_TEST(ScreenshotFolderTest)
#include "ScreenshotFolderTest.moc"
