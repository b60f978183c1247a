// SPDX-License-Identifier: MIT
#include "tests/app/AppRig.h"

#include "core/VelmoraSettings.h"
#include "tests/world/TestProgram.h"

#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

class VelmoraAppTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { AppRig::clear(); }

    void theLaunchIsLoggedInItsOrder()
    {
        AppRig rig;
        rig.launch();
        QTRY_VERIFY(rig.log.messagesWith(QStringLiteral("watch")).size() >= 2);
        const QStringList messages = rig.log.messagesWith(QString());
        const qsizetype launched =
            messages.indexOf(QStringLiteral("applicationDidFinishLaunching"));
        const qsizetype watching = messages.indexOf(QStringLiteral("watching ") + AppRig::folder());
        QVERIFY(launched >= 0);
        QVERIFY(launched < watching);
        QVERIFY(watching < messages.indexOf(QStringLiteral("watcher start")));
    }

    void theWelcomeWindowFollowsEveryLaunch()
    {
        AppRig rig;
        rig.launch();
        QVERIFY(!AppRig::windowTitled(QStringLiteral("Velmora")));
        QTRY_VERIFY(AppRig::windowTitled(QStringLiteral("Velmora")));
    }

    void aNewScreenshotBecomesARowAndIsRenamedByItsText()
    {
        AppRig rig;
        rig.launch();
        rig.take(QStringLiteral("Screenshot.PNG"));
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(QStringLiteral("safari-harvest-festival-invitation.png")));
        QCOMPARE(AppRig::rows().size(), 1);
        QCOMPARE(AppRig::rows().constFirst()->findChild<QLineEdit *>()->text(),
                 QStringLiteral("safari-harvest-festival-invitation.png"));
    }

    void theFallbackNameStandsUntilTheTextIsRead()
    {
        AppRig rig;
        rig.recognizer->hold();
        rig.launch();
        rig.take(QStringLiteral("Screenshot.png"));
        static const QRegularExpression fallback(
            QStringLiteral("^safari-screen-\\d{8}-\\d{6}\\.png$"));
        QTRY_VERIFY(AppRig::filesInFolder().constFirst().contains(fallback));
        rig.recognizer->letRead();
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(QStringLiteral("safari-harvest-festival-invitation.png")));
    }

    void aPictureOfTheWholeScreenIsNotReadWhereTheTrayStood()
    {
        AppRig rig;
        rig.launch();
        rig.take(QStringLiteral("Part.png"));
        QTRY_COMPARE(rig.recognizer->readings().size(), 1);
        QCOMPARE(rig.recognizer->readings().constFirst().leftOut, QList<QRect>());
        QTRY_COMPARE(AppRig::rows().size(), 1);
        const ScreenshotRowView *row = AppRig::rows().constFirst();
        QTRY_VERIFY(row->window()->isVisible());
        const QRect tray(row->window()->mapToGlobal(QPoint()), row->window()->size());

        rig.take(QStringLiteral("Whole.png"), QApplication::primaryScreen()->size());
        QTRY_COMPARE(rig.recognizer->readings().size(), 2);
        const QList<QRect> leftOut = rig.recognizer->readings().constLast().leftOut;
        QVERIFY(std::any_of(leftOut.cbegin(), leftOut.cend(),
                            [&](const QRect &area) { return area.contains(tray.center()); }));
        rig.take(QStringLiteral("Other part.png"), {640, 400});
        QTRY_COMPARE(rig.recognizer->readings().size(), 3);
        QCOMPARE(rig.recognizer->readings().constLast().leftOut, QList<QRect>());
    }

    void aScreenshotThatIsARowIsIgnored()
    {
        AppRig rig;
        rig.launch();
        rig.take(QStringLiteral("Screenshot.png"));
        const QString named = QStringLiteral("safari-harvest-festival-invitation.png");
        QTRY_COMPARE(AppRig::filesInFolder(), QStringList(named));
        const LogTail log;
        rig.app->handleNewScreenshot(
            FileUrls::fromPath(AppRig::folder() + QStringLiteral("/./") + named));
        const QString path = AppRig::folder() + QLatin1Char('/') + named;
        QCOMPARE(log.messagesWith(path),
                 QStringList(QStringLiteral("ignored already visible ") + path));
        QCOMPARE(AppRig::rows().size(), 1);
    }

    void aSystemComponentInFrontLeavesTheNameAlone()
    {
        AppRig rig;
        rig.launch();
        rig.frontmost->inFront = {QStringLiteral("Finder"), QStringLiteral("com.apple.finder")};
        rig.take(QStringLiteral("Screenshot.png"));
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(QStringLiteral("safari-harvest-festival-invitation.png")));
    }

    void withNothingToCopyTheClipboardIsNotTouched()
    {
        AppRig rig;
        rig.launch();
        rig.take(QStringLiteral("Screenshot.png"));
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(QStringLiteral("safari-harvest-festival-invitation.png")));
        QCOMPARE(rig.pasteboard->changes, 0);
    }

    void theCopyFollowsTheFile()
    {
        AppRig rig;
        VelmoraSettings::setCopyBehavior(CopyBehavior::imageAndFile);
        rig.recognizer->hold();
        rig.launch();
        rig.take(QStringLiteral("Screenshot.png"));
        QTRY_VERIFY(rig.pasteboard->contents && rig.pasteboard->contents->file);
        QVERIFY(rig.pasteboard->contents->picture->bytes.has_value());
        QVERIFY(FileUrls::exists(*rig.pasteboard->contents->file));
        rig.recognizer->letRead();
        const QUrl named = FileUrls::fromPath(
            AppRig::folder() + QStringLiteral("/safari-harvest-festival-invitation.png"));
        QTRY_COMPARE(*rig.pasteboard->contents->file, named);
        QVERIFY(FileUrls::exists(named));
    }

    void aNameThatIsBeingTypedStays()
    {
        AppRig rig;
        rig.recognizer->hold();
        rig.launch();
        rig.take(QStringLiteral("Screenshot.png"));
        QTRY_COMPARE(AppRig::rows().size(), 1);
        auto *field = AppRig::rows().constFirst()->findChild<QLineEdit *>();
        field->selectAll();
        QTest::keyClicks(field, QStringLiteral("mine"));
        rig.recognizer->letRead();
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE(AppRig::filesInFolder(), QStringList(QStringLiteral("mine.png")));
        QTRY_COMPARE(field->text(), QStringLiteral("mine.png"));
    }

    void aRowThatIsClosedMeanwhileKeepsTheFallbackName()
    {
        AppRig rig;
        rig.recognizer->hold();
        rig.launch();
        rig.take(QStringLiteral("Screenshot.png"));
        QTRY_COMPARE(AppRig::rows().size(), 1);
        QTRY_COMPARE(rig.recognizer->begun, 1);
        QTRY_VERIFY(AppRig::filesInFolder().constFirst().startsWith(u"safari-screen-"));
        const QStringList before = AppRig::filesInFolder();
        QTest::keyClick(AppRig::rows().constFirst()->findChild<QLineEdit *>(), Qt::Key_Escape);
        QTRY_VERIFY(AppRig::rows().isEmpty());
        rig.recognizer->letRead();
        // The next one's name shows that the closed one's text has been handled.
        rig.take(QStringLiteral("Another.png"));
        QTRY_VERIFY(AppRig::filesInFolder().contains(
            QStringLiteral("safari-harvest-festival-invitation.png")));
        QVERIFY(AppRig::filesInFolder().contains(before.constFirst()));
        QCOMPARE(AppRig::filesInFolder().size(), 2);
        QTRY_COMPARE(rig.recognizer->abandoned, 1);
    }

    void aFileThatHasTakenAnothersPlaceKeepsItsName()
    {
        AppRig rig;
        rig.recognizer->hold();
        rig.launch();
        rig.take(QStringLiteral("Screenshot.png"));
        QTRY_COMPARE(AppRig::rows().size(), 1);
        QTRY_VERIFY(AppRig::rows().constFirst()->fileURL().fileName().startsWith(
            QStringLiteral("safari-screen-")));
        const QUrl place = AppRig::rows().constFirst()->fileURL();
        QTRY_VERIFY(AppRig::canUndo(*AppRig::rows().constFirst()));
        Q_EMIT rig.platform.runningInstance->actionRequested(QStringLiteral("undo"));
        QTRY_VERIFY(FileUrls::exists(
            FileUrls::fromPath(AppRig::folder() + QStringLiteral("/Screenshot.png"))));
        QVERIFY(
            QFile::copy(AppRig::folder() + QStringLiteral("/Screenshot.png"), place.toLocalFile()));
        rig.app->handleNewScreenshot(place);
        rig.recognizer->letRead();
        rig.take(QStringLiteral("Another.png"));
        QTRY_VERIFY(AppRig::filesInFolder().contains(
            QStringLiteral("safari-harvest-festival-invitation.png")));
        QVERIFY(FileUrls::exists(place));
    }

    /// As a tool does that writes a temporary file and then replaces the file with it.
    void aFileThatIsReplacedWhileItIsWrittenIsNamedAllTheSame()
    {
        AppRig rig;
        rig.launch();
        const QString place = AppRig::folder() + QStringLiteral("/Screenshot.png");
        QFile begun(place);
        QVERIFY(begun.open(QFile::WriteOnly));
        begun.write("\x89PNG\r\n\x1a\n");
        begun.flush();
        QTRY_COMPARE(AppRig::rows().size(), 1);
        const QString beside = AppRig::folder() + QStringLiteral("/.beside");
        QImage picture(320, 200, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        QVERIFY(picture.save(beside, "PNG"));
        QCOMPARE(std::rename(QFile::encodeName(beside).constData(),
                             QFile::encodeName(place).constData()),
                 0);
        begun.close();
        QTRY_COMPARE_WITH_TIMEOUT(
            AppRig::filesInFolder(),
            QStringList(QStringLiteral("safari-harvest-festival-invitation.png")), 20'000);
        QVERIFY(!QTest::qWaitFor([] { return AppRig::rows().size() != 1; }, 500));
    }

    void reopeningShowsTheWelcomeWindowAgain()
    {
        AppRig rig;
        rig.launch();
        QTRY_VERIFY(AppRig::windowTitled(QStringLiteral("Velmora")));
        AppRig::windowTitled(QStringLiteral("Velmora"))->close();
        QVERIFY(!AppRig::windowTitled(QStringLiteral("Velmora")));
        Q_EMIT rig.platform.runningInstance->reopened();
        QVERIFY(AppRig::windowTitled(QStringLiteral("Velmora")));
        Q_EMIT rig.platform.runningInstance->reopened();
        QVERIFY(AppRig::windowTitled(QStringLiteral("Velmora")));
    }

    void theMenuTakesTheLastActionBack()
    {
        AppRig rig;
        rig.launch();
        rig.take(QStringLiteral("Screenshot.png"));
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(QStringLiteral("safari-harvest-festival-invitation.png")));
        Q_EMIT rig.platform.runningInstance->actionRequested(QStringLiteral("undo"));
        QTRY_VERIFY(
            AppRig::filesInFolder().constFirst().startsWith(QStringLiteral("safari-screen-")));
        Q_EMIT rig.platform.runningInstance->actionRequested(QStringLiteral("undo"));
        QTRY_COMPARE(AppRig::filesInFolder(), QStringList(QStringLiteral("Screenshot.png")));
        Q_EMIT rig.platform.runningInstance->actionRequested(QStringLiteral("undo"));
        QCOMPARE(AppRig::filesInFolder(), QStringList(QStringLiteral("Screenshot.png")));
    }

    void whatWasTakenBackInTheRowIsNotTakenBackAgain()
    {
        AppRig rig;
        rig.launch();
        rig.take(QStringLiteral("Screenshot.png"));
        QTRY_COMPARE(AppRig::filesInFolder(),
                     QStringList(QStringLiteral("safari-harvest-festival-invitation.png")));
        for (auto *button : AppRig::rows().constFirst()->findChildren<QPushButton *>()) {
            if (button->text() == QStringLiteral("Undo"))
                button->click();
        }
        QTRY_VERIFY(
            AppRig::filesInFolder().constFirst().startsWith(QStringLiteral("safari-screen-")));
        QCoreApplication::processEvents();
        Q_EMIT rig.platform.runningInstance->actionRequested(QStringLiteral("undo"));
        QTRY_COMPARE(AppRig::filesInFolder(), QStringList(QStringLiteral("Screenshot.png")));
    }

    void theRecentListSurvivesARestart()
    {
        {
            AppRig rig;
            rig.launch();
            rig.take(QStringLiteral("Screenshot.png"));
            QTRY_VERIFY(VelmoraSettings::open()
                            .value(QStringLiteral("recentScreenshots"))
                            .toStringList()
                            .value(0)
                            .endsWith(QStringLiteral("invitation.png")));
        }
        AppRig again;
        again.launch();
        Q_EMIT again.platform.runningInstance->actionRequested(QStringLiteral("recent"));
        QTRY_VERIFY(AppRig::windowTitled(QStringLiteral("Recent Screenshots")));
    }

    void watchingAnotherFolderLeavesTheFirst()
    {
        AppRig rig;
        rig.launch();
        QTemporaryDir other;
        rig.app->startWatching(FileUrls::fromPath(other.path()));
        rig.take(QStringLiteral("Screenshot.png"));
        QImage picture(20, 20, QImage::Format_RGB32);
        picture.fill(Qt::red);
        picture.save(other.filePath(QStringLiteral("Here.png")));
        QTRY_VERIFY(QFile::exists(
            other.filePath(QStringLiteral("safari-harvest-festival-invitation.png"))));
        QCOMPARE(AppRig::filesInFolder(), QStringList(QStringLiteral("Screenshot.png")));
    }
};

VELMORA_WIDGETS_TEST(VelmoraAppTest)
#include "VelmoraAppTest.moc"
