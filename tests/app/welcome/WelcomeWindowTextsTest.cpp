// SPDX-License-Identifier: MIT
#include "tests/app/welcome/WelcomeWindowParts.h"

#include "style/VelmoraPalette.h"
#include "style/lightAppearance.h"
#include "tests/world/TestProgram.h"

#include <QAbstractItemView>
#include <QFontInfo>
#include <QRegularExpression>

#include <memory>

using namespace WelcomeWindowParts;

namespace
{

QColor blended(const QColor &color, double alpha, const QColor &ground)
{
    const auto mix = [alpha](float over, float under) {
        return float(alpha) * over + float(1 - alpha) * under;
    };
    return QColor::fromRgbF(mix(color.redF(), ground.redF()), mix(color.greenF(), ground.greenF()),
                            mix(color.blueF(), ground.blueF()));
}

bool nearlyEqual(const QColor &one, const QColor &other)
{
    return std::abs(one.red() - other.red()) <= 2 && std::abs(one.green() - other.green()) <= 2 &&
           std::abs(one.blue() - other.blue()) <= 2;
}

/// The colour that paints the label's text.
QColor textColor(const QLabel &label)
{
    return label.palette().color(label.foregroundRole());
}

/// The picture in the same row or card as the label.
QLabel *symbolBeside(const QLabel &label)
{
    for (QLabel *sibling : label.parentWidget()->findChildren<QLabel *>())
        if (!sibling->pixmap().isNull())
            return sibling;
    return nullptr;
}

} // namespace

class WelcomeWindowTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { applyLightAppearance(); }
    void init() { VelmoraSettings::open().clear(); }

    void everyTextStandsBelowTheOneBefore()
    {
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        const QStringList topToBottom = {
            QStringLiteral("Your screenshots, already handled."),
            QStringLiteral("Velmora catches each new screenshot, gives it a useful name, and keeps "
                           "copy, drag, file manager, and delete one click away."),
            QStringLiteral("Ready for screenshots"),
            QStringLiteral("Folder"),
            QStringLiteral("Local naming only"),
            QStringLiteral("Privacy: screenshots stay on this computer. Velmora uses local OCR for "
                           "naming and does not upload your images."),
            QStringLiteral("Setup checklist"),
            QStringLiteral("Turn on instant screenshots"),
            QStringLiteral("Screenshot folder selected"),
            QStringLiteral("Smart naming is active"),
            QStringLiteral("Screenshots stay on this computer"),
            QStringLiteral("Permissions, in plain English"),
            QStringLiteral("Velmora never records your screen. It only looks into the folder you "
                           "choose. Start at login is only enabled if you turn it on."),
            QStringLiteral("General"),
            QStringLiteral("Behavior"),
            QStringLiteral("Auto-copy"),
            QStringLiteral("Picture is best for chats. File is best for uploads and attachments."),
        };
        int bottom = 0;
        for (const QString &text : topToBottom) {
            const QLabel *found = label(window, text);
            QVERIFY2(found, qUtf8Printable(text));
            QVERIFY2(place(*found).top() >= bottom, qUtf8Printable(text));
            bottom = place(*found).bottom();
        }
    }

    void whatStandsSideBySideIsInItsOrder()
    {
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        const auto inOrder = [](const QList<QWidget *> &parts) {
            int right = -1;
            for (const QWidget *part : parts) {
                if (!part || place(*part).left() <= right)
                    return false;
                right = place(*part).right();
            }
            return true;
        };
        QVERIFY(inOrder({label(window, QStringLiteral("Instant mode off")),
                         label(window, QStringLiteral("Ready for screenshots"))}));
        QVERIFY(inOrder({label(window, QStringLiteral("Instant")),
                         label(window, QStringLiteral("Private")),
                         label(window, QStringLiteral("Folder"))}));
        QVERIFY(inOrder({popUp(window, QStringLiteral("Auto-copy")),
                         popUp(window, QStringLiteral("Tray duration")),
                         popUp(window, QStringLiteral("Tray position"))}));
        const QString path = QStringLiteral("/home/anna/Pictures/Screenshots");
        QVERIFY(inOrder({button(window, QStringLiteral("Recent Screenshots")),
                         labels(window, path).last(), button(window, QStringLiteral("Done")),
                         button(window, QStringLiteral("Feedback"))}));
    }

    void whatTheDesktopLacksIsSaidInOneSentence_data()
    {
        QTest::addColumn<QList<DesktopLimit>>("missing");
        QTest::addColumn<QString>("sentence");
        using enum DesktopLimit;
        QTest::newRow("no status bar")
            << QList{StatusItem}
            << QStringLiteral("On this desktop Velmora has no icon in the status bar (start it "
                              "again to open this window).");
        QTest::newRow("GNOME on Wayland")
            << QList{StatusItem, ApplicationInFront}
            << QStringLiteral("On this desktop Velmora has no icon in the status bar (start it "
                              "again to open this window) and can't always tell which application "
                              "is in front.");
        QTest::newRow("all")
            << QList{StatusItem, TrayPlace, ApplicationInFront}
            << QStringLiteral("On this desktop Velmora has no icon in the status bar (start it "
                              "again to open this window), can't choose where its tray stands and "
                              "can't always tell which application is in front.");
    }

    void whatTheDesktopLacksIsSaidInOneSentence()
    {
        QFETCH(const QList<DesktopLimit>, missing);
        QFETCH(const QString, sentence);
        limits().setMissing({});
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        QVERIFY(!label(window, sentence));
        // Found out while the window is shown.
        limits().setMissing(missing);
        const QLabel *shown = label(window, sentence);
        QVERIFY(shown && shown->isVisible());
        const QLabel *permissions = label(
            window,
            QStringLiteral("Velmora never records your screen. It only looks into the folder you "
                           "choose. Start at login is only enabled if you turn it on."));
        QTRY_VERIFY(place(*shown).top() >= place(*permissions).bottom());
        QTRY_VERIFY(place(*label(window, QStringLiteral("General"))).top() >=
                    place(*shown).bottom());
        QTRY_VERIFY(shown->height() >= shown->heightForWidth(shown->width()));

        WelcomeWindow later(state());
        QVERIFY(label(later, sentence));
        limits().setMissing({});
        QVERIFY(!shown->isVisible());
    }

    void nothingNamesAnotherSystem()
    {
        static const QRegularExpression foreign(
            QStringLiteral("\\bMac\\b|macOS|Finder|Apple|Screen Recording|delay"));
        for (const bool instant : {false, true}) {
            const WelcomeWindow window(state(instant));
            for (const QWidget *part : window.findChildren<QWidget *>()) {
                const auto *shown = qobject_cast<const QLabel *>(part);
                for (const QString &text :
                     {shown ? shown->text() : QString(), part->toolTip(), part->accessibleName()})
                    QVERIFY2(!text.contains(foreign), qUtf8Printable(text));
            }
        }
    }

    void instantModeOffIsSaidEverywhere()
    {
        const WelcomeWindow window(state(false));
        QVERIFY(label(window, QStringLiteral("Instant mode off")));
        QVERIFY(label(window, QStringLiteral("Save them at once")));
        QVERIFY(label(window, QStringLiteral("Turn on instant screenshots")));
        QVERIFY(button(window, QStringLiteral("Make Instant")));
        QVERIFY(!label(window, QStringLiteral("Instant mode on")));
    }

    void instantModeOnIsSaidEverywhere()
    {
        const WelcomeWindow window(state(true));
        QVERIFY(label(window, QStringLiteral("Instant mode on")));
        QVERIFY(label(window, QStringLiteral("Saved at once")));
        QVERIFY(label(window, QStringLiteral("Instant screenshots are on")));
        QVERIFY(button(window, QStringLiteral("Instant Mode On")));
        QVERIFY(button(window, QStringLiteral("Instant Mode On"))->isEnabled());
        QVERIFY(!label(window, QStringLiteral("Instant mode off")));
    }

    void theWindowIsASnapshot()
    {
        WelcomeWindow window(state(true));
        QVERIFY(showActive(window));
        window.close();
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        QVERIFY(showActive(window));
        QVERIFY(label(window, QStringLiteral("Instant mode on")));
        QCOMPARE(popUp(window, QStringLiteral("Tray position"))->currentText(),
                 QStringLiteral("Bottom-right"));
    }

    void aStateIsInItsColor_data()
    {
        QTest::addColumn<bool>("on");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QColor>("color");
        QTest::newRow("off pill") << false << "Instant mode off" << VelmoraPalette::amber();
        QTest::newRow("on pill") << true << "Instant mode on" << VelmoraPalette::teal();
        QTest::newRow("ready pill") << true << "Ready for screenshots" << VelmoraPalette::blue();
    }

    void aStateIsInItsColor()
    {
        QFETCH(const bool, on);
        QFETCH(const QString, text);
        QFETCH(const QColor, color);
        WelcomeWindow window(state(on));
        QVERIFY(showActive(window));
        QLabel *pill = label(window, text);
        QVERIFY(pill);
        const QImage image = window.grab(place(*pill)).toImage();
        const QColor ground = VelmoraPalette::window();
        const QColor fill = blended(color, 0.18, ground);
        QVERIFY(nearlyEqual(image.pixelColor(5, pill->height() / 2), fill));
        QVERIFY(nearlyEqual(image.pixelColor(pill->width() / 2, 0), blended(color, 0.24, fill)));
        QVERIFY(nearlyEqual(image.pixelColor(0, 0), ground));
    }

    void aSymbolIsThereInItsColor_data()
    {
        QTest::addColumn<bool>("on");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QColor>("color");
        QTest::newRow("not instant") << false << "Instant" << VelmoraPalette::amber();
        QTest::newRow("instant") << true << "Instant" << VelmoraPalette::teal();
        QTest::newRow("private") << false << "Private" << VelmoraPalette::teal();
        QTest::newRow("folder") << false << "Folder" << VelmoraPalette::blue();
        QTest::newRow("open") << false << "Turn on instant screenshots" << VelmoraPalette::amber();
        QTest::newRow("done") << true << "Instant screenshots are on" << VelmoraPalette::teal();
        QTest::newRow("folder done")
            << false << "Screenshot folder selected" << VelmoraPalette::teal();
        QTest::newRow("naming done") << false << "Smart naming is active" << VelmoraPalette::teal();
        QTest::newRow("staying done")
            << false << "Screenshots stay on this computer" << VelmoraPalette::teal();
        QTest::newRow("permissions")
            << false << "Permissions, in plain English" << VelmoraPalette::blue();
    }

    void aSymbolIsThereInItsColor()
    {
        QFETCH(const bool, on);
        QFETCH(const QString, text);
        QFETCH(const QColor, color);
        WelcomeWindow window(state(on));
        QVERIFY(showActive(window));
        QLabel *title = label(window, text);
        QVERIFY(title);
        QLabel *symbol = symbolBeside(*title);
        QVERIFY(symbol);
        // A thin line has no pixel that is fully in its colour.
        constexpr int tolerance = 48;
        QVERIFY(pixelsOf(*symbol, color, tolerance) > 10);
    }

    void openItemsStandOutAndFinishedOnesRecede()
    {
        const WelcomeWindow off(state(false));
        const WelcomeWindow on(state(true));
        const QLabel *open = label(off, QStringLiteral("Turn on instant screenshots"));
        const QLabel *finished = label(on, QStringLiteral("Instant screenshots are on"));
        QCOMPARE(textColor(*open), VelmoraPalette::primaryText());
        QCOMPARE(textColor(*finished), VelmoraPalette::secondaryText());
        QCOMPARE(symbolBeside(*open)->size(), QSize(16, 16));
    }

    void theTypeSizesAreTheStatedOnes()
    {
        const WelcomeWindow window(state());
        const auto size = [&window](const QString &start) {
            for (const QLabel *candidate : window.findChildren<QLabel *>())
                if (candidate->text().startsWith(start))
                    return candidate->font().pixelSize();
            return 0;
        };
        QCOMPARE(size(QStringLiteral("Velmora catches")), 14);
        QCOMPARE(size(QStringLiteral("Velmora never records")), 12);
        QCOMPARE(size(QStringLiteral("Instant mode off")), 12);
        QCOMPARE(size(QStringLiteral("Smart naming")), 12);
        QCOMPARE(label(window, QStringLiteral("Instant mode off"))->font().weight(),
                 QFont::DemiBold);
        QCOMPARE(label(window, QStringLiteral("Smart naming is active"))->font().weight(),
                 QFont::Medium);
    }

    void theFolderIsNamedByItsLastComponent_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << "/home/anna/Shots"
                               << "Shots"
                               << "/home/anna/Shots";
        QTest::newRow("trailing slash") << "/home/anna/Shots/"
                                        << "Shots"
                                        << "/home/anna/Shots";
        QTest::newRow("markup") << "/home/<b>anna</b>"
                                << "b>"
                                << "/home/<b>anna</b>";
        QTest::newRow("ampersand") << "/home/R&D"
                                   << "R&D"
                                   << "/home/R&D";
    }

    void theFolderIsNamedByItsLastComponent()
    {
        QFETCH(const QString, folder);
        QFETCH(const QString, name);
        QFETCH(const QString, path);
        const WelcomeWindow window(state(false, false, folder));
        QCOMPARE(labels(window, name).size(), 2);
        QCOMPARE(labels(window, path).size(), 2);
    }

    void theRootFolderIsSelectedOnTheCardAndWholeInTheChecklist()
    {
        WelcomeWindow window(state(false, false, QStringLiteral("/")));
        QVERIFY(showActive(window));
        const QLabel *onCard = label(window, QStringLiteral("Selected"));
        QVERIFY(onCard);
        QVERIFY(place(*onCard).left() > place(*label(window, QStringLiteral("Private"))).right());
        const int checklistRow =
            place(*label(window, QStringLiteral("Screenshot folder selected"))).bottom();
        const int nextRow = place(*label(window, QStringLiteral("Smart naming is active"))).top();
        int inChecklist = 0;
        const QList<QLabel *> paths = labels(window, QStringLiteral("/"));
        for (const QLabel *path : paths) {
            const QRect where = place(*path);
            inChecklist += where.top() >= checklistRow && where.bottom() <= nextRow ? 1 : 0;
        }
        QCOMPARE(inChecklist, 1);
        QCOMPARE(paths.size(), 3);
    }

    void aLongPathIsCutInTheMiddleAndWholeAsToolTip()
    {
        const QString path = QStringLiteral("/home/anna/") + QString(300, QLatin1Char('w')) +
                             QStringLiteral("/Screenshots");
        WelcomeWindow window(state(false, false, path));
        QVERIFY(showActive(window));
        QCOMPARE(window.width(), 620);
        const QList<QLabel *> paths = labels(window, path);
        QCOMPARE(paths.size(), 2);
        for (QLabel *shown : paths) {
            QCOMPARE(shown->toolTip(), path);
            QVERIFY(QFontInfo(shown->font()).fixedPitch());
            QVERIFY(window.rect().contains(place(*shown)));
            // Both ends are painted, so the cut is in the middle.
            const QImage image = shown->grab().toImage();
            const QColor ground = image.pixelColor(0, 0);
            const auto hasInk = [&image, &ground](const QRect &part) {
                for (int y = part.top(); y <= part.bottom(); ++y)
                    for (int x = part.left(); x <= part.right(); ++x)
                        if (!nearlyEqual(image.pixelColor(x, y), ground))
                            return true;
                return false;
            };
            QVERIFY(hasInk(QRect(0, 0, 30, image.height())));
            QVERIFY(hasInk(QRect(image.width() - 30, 0, 30, image.height())));
        }
    }

    void aDarkDesktopChangesNothing()
    {
        WelcomeWindow light(state());
        QVERIFY(showActive(light));
        const QImage expected = light.grab().toImage();
        light.hide();

        const QPalette before = QApplication::palette();
        QPalette dark(QColor(40, 40, 40), QColor(30, 30, 30));
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            dark.setColor(role, Qt::white);
        QApplication::setPalette(dark);
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        const QImage shown = window.grab().toImage();
        OptionPopUp *position = popUp(window, QStringLiteral("Tray position"));
        position->showPopup();
        QVERIFY(QTest::qWaitForWindowExposed(position->view()->window()));
        const int lightPixels = pixelsOf(*position->view(), VelmoraPalette::card());
        position->hidePopup();
        QApplication::setPalette(before);
        QCOMPARE(shown, expected);
        QVERIFY(lightPixels > 1000);
    }
};

VELMORA_WIDGETS_TEST(WelcomeWindowTextsTest)
#include "WelcomeWindowTextsTest.moc"
