// SPDX-License-Identifier: MIT
#include "naming/applicationOfPicture.h"

#include "imaging/ScreenshotImages.h"
#include "imaging/pictureTexts.h"
#include "naming/ScreenshotNamer.h"
#include "platform/FileWriters.h"
#include "tests/fakes/FakeTextRecognizer.h"
#include "tests/world/TestProgram.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 20'000; // milliseconds

} // namespace

class ApplicationOfPictureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTitleOrTheSoftwareNamesTheApplication_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("software");
        QTest::addColumn<QString>("application");
        const auto row = [](const char *title, const char *software, const char *application) {
            QTest::newRow(title[0] ? title : software)
                << QString::fromUtf8(title) << QString::fromUtf8(software)
                << QString::fromUtf8(application);
        };
        row("Inbox — Thunderbird", "", "Thunderbird");
        row("a - b - Mozilla Firefox", "Spectacle", "Mozilla Firefox");
        row("notes.txt – Kate", "", "Kate");
        row("letter to Anna", "", "");
        row("2026 - a very long end of a title that is no name of an application", "", "");
        row(" — ", "", "");
        row("", "", "");
        row("", "gnome-screenshot", "");
        row("", "mate-screenshot", "");
        row("", "Qt", "");
        row("", "Inkscape", "Inkscape");
    }

    void theTitleOrTheSoftwareNamesTheApplication()
    {
        QFETCH(const QString, title);
        QFETCH(const QString, software);
        QTEST(applicationOfPicture({title, software}), "application");
    }

    void itStandsInTheNameOnlyWhereTheApplicationInFrontIsNotKnown_data()
    {
        QTest::addColumn<QString>("appName");
        QTest::addColumn<bool>("isKnown");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("name");
        QTest::newRow("known") << u"Mail"_s << true << u"x — Kate"_s
                               << u"mail-harvest-festival-invitation.png"_s;
        QTest::newRow("assumed") << u"screenshot"_s << false << u"x — Kate"_s
                                 << u"kate-harvest-festival-invitation.png"_s;
        QTest::newRow("not told") << QString() << false << u"x — Kate"_s
                                  << u"kate-harvest-festival-invitation.png"_s;
        QTest::newRow("hostile") << QString() << false << u"x — ../../Etc;$(rm) /"_s
                                 << u"etc-harvest-festival-invitation.png"_s;
        QTest::newRow("no text") << QString() << false << QString()
                                 << u"harvest-festival-invitation.png"_s;
    }

    void itStandsInTheNameOnlyWhereTheApplicationInFrontIsNotKnown()
    {
        QFETCH(const QString, appName);
        QFETCH(const bool, isKnown);
        QFETCH(const QString, title);
        const QTemporaryDir folder;
        const QUrl file = QUrl::fromLocalFile(folder.filePath(u"shot.png"_s));
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(Qt::white);
        if (!title.isEmpty())
            image.setText(u"windowTitle"_s, title);
        QVERIFY(image.save(file.toLocalFile()));

        FakeTextRecognizer recognizer;
        recognizer.setLines({u"Harvest festival invitation"_s});
        const auto writers = makeFileWriters();
        ScreenshotImages images(*writers);
        ScreenshotNamer namer(recognizer, images);
        const QFuture<QString> name = namer.suggestFilename(
            images.hold(file), file, appName, {},
            isKnown ? ScreenshotNamer::AppName::Known : ScreenshotNamer::AppName::Assumed);
        QTRY_VERIFY_WITH_TIMEOUT(name.isFinished(), patience);
        QTEST(name.result(), "name");
    }
};

VELMORA_EVENTS_TEST(ApplicationOfPictureTest)
#include "ApplicationOfPictureTest.moc"
