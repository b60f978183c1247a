// SPDX-License-Identifier: MIT
#include "tests/app/AppRig.h"

#include "core/VelmoraSettings.h"
#include "tests/world/TestProgram.h"

#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

class VelmoraAppTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { AppRig::clear(); }

    void theLaunchIsLoggedInItsOrder()
    {
        AppRig rig;
        rig.launch();
        // The watcher's own thread writes it.
        QTRY_VERIFY(rig.log.messagesWith(QString()).contains(u"watcher start"_s));
        const QStringList messages = rig.log.messagesWith(QString());
        const qsizetype launched = messages.indexOf(u"applicationDidFinishLaunching"_s);
        const qsizetype watching = messages.indexOf(u"watching "_s + AppRig::folder());
        QVERIFY(launched >= 0);
        QVERIFY(launched < watching);
        QVERIFY(watching < messages.indexOf(u"watcher start"_s));
    }

    void theWelcomeWindowFollowsEveryLaunch()
    {
        AppRig rig;
        rig.launch();
        QVERIFY(!AppRig::windowTitled(u"Velmora"_s));
        QTRY_VERIFY(AppRig::windowTitled(u"Velmora"_s));
    }

    void aNewScreenshotBecomesARowAndIsRenamedByItsText()
    {
        AppRig rig;
        rig.launch();
        rig.take(u"Screenshot.PNG"_s);
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(u"safari-harvest-festival-invitation.png"_s));
        QCOMPARE(AppRig::rows().size(), 1);
        QCOMPARE(AppRig::rows().constFirst()->findChild<QLineEdit *>()->text(),
                 u"safari-harvest-festival-invitation.png"_s);
    }

    void theFallbackNameStandsUntilTheTextIsRead()
    {
        AppRig rig;
        rig.recognizer->hold();
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        static const QRegularExpression fallback(u"^safari-screen-\\d{8}-\\d{6}\\.png$"_s);
        QTRY_VERIFY(AppRig::filesInFolder().constFirst().contains(fallback));
        rig.recognizer->letRead();
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(u"safari-harvest-festival-invitation.png"_s));
    }

    void aPictureOfTheWholeScreenIsNotReadWhereTheTrayStood()
    {
        AppRig rig;
        rig.launch();
        rig.take(u"Part.png"_s);
        QTRY_COMPARE(rig.recognizer->readings().size(), 1);
        QCOMPARE(rig.recognizer->readings().constFirst().leftOut, QList<QRect>());
        QTRY_COMPARE(AppRig::rows().size(), 1);
        const ScreenshotRowView *row = AppRig::rows().constFirst();
        QTRY_VERIFY(row->window()->isVisible());
        const QRect tray(row->window()->mapToGlobal(QPoint()), row->window()->size());

        rig.take(u"Whole.png"_s, QApplication::primaryScreen()->size());
        QTRY_COMPARE(rig.recognizer->readings().size(), 2);
        const QList<QRect> leftOut = rig.recognizer->readings().constLast().leftOut;
        QVERIFY(std::any_of(leftOut.cbegin(), leftOut.cend(),
                            [&](const QRect &area) { return area.contains(tray.center()); }));
        rig.take(u"Other part.png"_s, {640, 400});
        QTRY_COMPARE(rig.recognizer->readings().size(), 3);
        QCOMPARE(rig.recognizer->readings().constLast().leftOut, QList<QRect>());
    }

    void aScreenshotThatIsARowIsIgnored()
    {
        AppRig rig;
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        const QString named = u"safari-harvest-festival-invitation.png"_s;
        QTRY_COMPARE(AppRig::filesInFolder(), QStringList(named));
        const LogTail log;
        rig.app->handleNewScreenshot(FileUrls::fromPath(AppRig::folder() + u"/./"_s + named));
        const QString path = AppRig::folder() + u'/' + named;
        QCOMPARE(log.messagesWith(path), QStringList(u"ignored already visible "_s + path));
        QCOMPARE(AppRig::rows().size(), 1);
    }

    void aSystemComponentInFrontLeavesTheNameAlone()
    {
        AppRig rig;
        rig.launch();
        rig.frontmost->inFront = {u"Finder"_s, u"com.apple.finder"_s};
        rig.take(u"Screenshot.png"_s);
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(u"safari-harvest-festival-invitation.png"_s));
    }

    void withNothingToCopyTheClipboardIsNotTouched()
    {
        AppRig rig;
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(u"safari-harvest-festival-invitation.png"_s));
        QCOMPARE(rig.pasteboard->changes, 0);
    }

    void theCopyFollowsTheFile()
    {
        AppRig rig;
        VelmoraSettings::setCopyBehavior(CopyBehavior::imageAndFile);
        rig.recognizer->hold();
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        QTRY_VERIFY(rig.pasteboard->contents && rig.pasteboard->contents->file);
        QVERIFY(rig.pasteboard->contents->picture->bytes.has_value());
        QVERIFY(FileUrls::exists(*rig.pasteboard->contents->file));
        rig.recognizer->letRead();
        const QUrl named =
            FileUrls::fromPath(AppRig::folder() + u"/safari-harvest-festival-invitation.png"_s);
        QTRY_COMPARE(*rig.pasteboard->contents->file, named);
        QVERIFY(FileUrls::exists(named));
    }

    void aNameThatIsBeingTypedStays()
    {
        AppRig rig;
        rig.recognizer->hold();
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        QTRY_COMPARE(AppRig::rows().size(), 1);
        auto *field = AppRig::rows().constFirst()->findChild<QLineEdit *>();
        field->selectAll();
        QTest::keyClicks(field, u"mine"_s);
        rig.recognizer->letRead();
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE(AppRig::filesInFolder(), QStringList(u"mine.png"_s));
        QTRY_COMPARE(field->text(), u"mine.png"_s);
    }

    void aRowThatIsClosedMeanwhileKeepsTheFallbackName()
    {
        AppRig rig;
        rig.recognizer->hold();
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        QTRY_COMPARE(AppRig::rows().size(), 1);
        QTRY_COMPARE(rig.recognizer->begun, 1);
        QTRY_VERIFY(AppRig::filesInFolder().constFirst().startsWith(u"safari-screen-"));
        const QStringList before = AppRig::filesInFolder();
        QTest::keyClick(AppRig::rows().constFirst()->findChild<QLineEdit *>(), Qt::Key_Escape);
        QTRY_VERIFY(AppRig::rows().isEmpty());
        rig.recognizer->letRead();
        // The next one's name shows that the closed one's text has been handled.
        rig.take(u"Another.png"_s);
        QTRY_VERIFY(AppRig::filesInFolder().contains(u"safari-harvest-festival-invitation.png"_s));
        QVERIFY(AppRig::filesInFolder().contains(before.constFirst()));
        QCOMPARE(AppRig::filesInFolder().size(), 2);
        QTRY_COMPARE(rig.recognizer->abandoned, 1);
    }

    void aFileThatHasTakenAnothersPlaceKeepsItsName()
    {
        AppRig rig;
        rig.recognizer->hold();
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        QTRY_COMPARE(AppRig::rows().size(), 1);
        QTRY_VERIFY(
            AppRig::rows().constFirst()->fileURL().fileName().startsWith(u"safari-screen-"_s));
        const QUrl place = AppRig::rows().constFirst()->fileURL();
        QTRY_VERIFY(AppRig::canUndo(*AppRig::rows().constFirst()));
        Q_EMIT rig.platform.runningInstance->actionRequested(u"undo"_s);
        QTRY_VERIFY(FileUrls::exists(FileUrls::fromPath(AppRig::folder() + u"/Screenshot.png"_s)));
        QVERIFY(QFile::copy(AppRig::folder() + u"/Screenshot.png"_s, place.toLocalFile()));
        rig.app->handleNewScreenshot(place);
        rig.recognizer->letRead();
        rig.take(u"Another.png"_s);
        QTRY_VERIFY(AppRig::filesInFolder().contains(u"safari-harvest-festival-invitation.png"_s));
        QVERIFY(FileUrls::exists(place));
    }

    /// As a tool does that writes a temporary file and then replaces the file with it.
    void aFileThatIsReplacedWhileItIsWrittenIsNamedAllTheSame()
    {
        AppRig rig;
        rig.launch();
        const QString place = AppRig::folder() + u"/Screenshot.png"_s;
        QFile begun(place);
        QVERIFY(begun.open(QFile::WriteOnly));
        begun.write("\x89PNG\r\n\x1a\n");
        begun.flush();
        QTRY_COMPARE(AppRig::rows().size(), 1);
        const QString beside = AppRig::folder() + u"/.beside"_s;
        QImage picture(320, 200, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        QVERIFY(picture.save(beside, "PNG"));
        QCOMPARE(std::rename(QFile::encodeName(beside).constData(),
                             QFile::encodeName(place).constData()),
                 0);
        begun.close();
        QTRY_COMPARE_WITH_TIMEOUT(AppRig::filesInFolder(),
                                  QStringList(u"safari-harvest-festival-invitation.png"_s), 20'000);
        QVERIFY(!QTest::qWaitFor([] { return AppRig::rows().size() != 1; }, 500));
    }

    void reopeningShowsTheWelcomeWindowAgain()
    {
        AppRig rig;
        rig.launch();
        QTRY_VERIFY(AppRig::windowTitled(u"Velmora"_s));
        AppRig::windowTitled(u"Velmora"_s)->close();
        QVERIFY(!AppRig::windowTitled(u"Velmora"_s));
        Q_EMIT rig.platform.runningInstance->reopened();
        QVERIFY(AppRig::windowTitled(u"Velmora"_s));
        Q_EMIT rig.platform.runningInstance->reopened();
        QVERIFY(AppRig::windowTitled(u"Velmora"_s));
    }

    void theMenuTakesTheLastActionBack()
    {
        AppRig rig;
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(u"safari-harvest-festival-invitation.png"_s));
        Q_EMIT rig.platform.runningInstance->actionRequested(u"undo"_s);
        QTRY_VERIFY(AppRig::filesInFolder().constFirst().startsWith(u"safari-screen-"_s));
        Q_EMIT rig.platform.runningInstance->actionRequested(u"undo"_s);
        QTRY_COMPARE(AppRig::filesInFolder(), QStringList(u"Screenshot.png"_s));
        Q_EMIT rig.platform.runningInstance->actionRequested(u"undo"_s);
        QCOMPARE(AppRig::filesInFolder(), QStringList(u"Screenshot.png"_s));
    }

    void whatWasTakenBackInTheRowIsNotTakenBackAgain()
    {
        AppRig rig;
        rig.launch();
        rig.take(u"Screenshot.png"_s);
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(u"safari-harvest-festival-invitation.png"_s));
        for (auto *button : AppRig::rows().constFirst()->findChildren<QPushButton *>()) {
            if (button->text() == u"Undo"_s)
                button->click();
        }
        QTRY_VERIFY(AppRig::filesInFolder().constFirst().startsWith(u"safari-screen-"_s));
        QCoreApplication::processEvents();
        Q_EMIT rig.platform.runningInstance->actionRequested(u"undo"_s);
        QTRY_COMPARE(AppRig::filesInFolder(), QStringList(u"Screenshot.png"_s));
    }

    void theRecentListSurvivesARestart()
    {
        {
            AppRig rig;
            rig.launch();
            rig.take(u"Screenshot.png"_s);
            QTRY_VERIFY(VelmoraSettings::open()
                            .value(u"recentScreenshots"_s)
                            .toStringList()
                            .value(0)
                            .endsWith(u"invitation.png"_s));
        }
        AppRig again;
        again.launch();
        Q_EMIT again.platform.runningInstance->actionRequested(u"recent"_s);
        QTRY_VERIFY(AppRig::windowTitled(u"Recent Screenshots"_s));
    }

    void watchingAnotherFolderLeavesTheFirst()
    {
        AppRig rig;
        rig.launch();
        QTemporaryDir other;
        rig.app->startWatching(FileUrls::fromPath(other.path()));
        rig.take(u"Screenshot.png"_s);
        QImage picture(20, 20, QImage::Format_RGB32);
        picture.fill(Qt::red);
        picture.save(other.filePath(u"Here.png"_s));
        QTRY_VERIFY(QFile::exists(other.filePath(u"safari-harvest-festival-invitation.png"_s)));
        QCOMPARE(AppRig::filesInFolder(), QStringList(u"Screenshot.png"_s));
    }
};

VELMORA_WIDGETS_TEST(VelmoraAppTest)
#include "VelmoraAppTest.moc"
