// SPDX-License-Identifier: MIT
#include "tests/app/welcome/WelcomeWindowParts.h"

#include "style/lightAppearance.h"
#include "tests/world/TestProgram.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace WelcomeWindowParts;

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
            u"Your screenshots, already handled."_s,
            u"Velmora catches each new screenshot, gives it a useful name, and keeps "
            "copy, drag, file manager, and delete one click away."_s,
            u"Ready for screenshots"_s,
            u"Folder"_s,
            u"Local naming only"_s,
            u"Privacy: screenshots stay on this computer. Velmora uses local OCR for "
            "naming and does not upload your images."_s,
            u"Setup checklist"_s,
            u"Turn on instant screenshots"_s,
            u"Screenshot folder selected"_s,
            u"Smart naming is active"_s,
            u"Screenshots stay on this computer"_s,
            u"Permissions, in plain English"_s,
            u"Velmora never records your screen. It only looks into the folder you "
            "choose. Start at login is only enabled if you turn it on."_s,
            u"General"_s,
            u"Behavior"_s,
            u"Auto-copy"_s,
            u"Picture is best for chats. File is best for uploads and attachments."_s,
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
        QVERIFY(inOrder(
            {label(window, u"Instant mode off"_s), label(window, u"Ready for screenshots"_s)}));
        QVERIFY(inOrder({label(window, u"Instant"_s), label(window, u"Private"_s),
                         label(window, u"Folder"_s)}));
        QVERIFY(inOrder({popUp(window, u"Auto-copy"_s), popUp(window, u"Tray duration"_s),
                         popUp(window, u"Tray position"_s)}));
        const QString path = u"/home/anna/Pictures/Screenshots"_s;
        QVERIFY(inOrder({button(window, u"Recent Screenshots"_s), labels(window, path).last(),
                         button(window, u"Done"_s), button(window, u"Feedback"_s)}));
    }

    void whatTheDesktopLacksIsSaidInOneSentence_data()
    {
        QTest::addColumn<QList<DesktopLimit>>("missing");
        QTest::addColumn<QString>("sentence");
        using enum DesktopLimit;
        QTest::newRow("no status bar")
            << QList{StatusItem}
            << u"On this desktop Velmora has no icon in the status bar (start it "
               "again to open this window)."_s;
        QTest::newRow("GNOME on Wayland")
            << QList{StatusItem, ApplicationInFront}
            << u"On this desktop Velmora has no icon in the status bar (start it "
               "again to open this window) and can't always tell which application "
               "is in front."_s;
        QTest::newRow("all")
            << QList{StatusItem, TrayPlace, ApplicationInFront}
            << u"On this desktop Velmora has no icon in the status bar (start it "
               "again to open this window), can't choose where its tray stands and "
               "can't always tell which application is in front."_s;
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
        const QLabel *permissions =
            label(window, u"Velmora never records your screen. It only looks into the folder you "
                          "choose. Start at login is only enabled if you turn it on."_s);
        QTRY_VERIFY(place(*shown).top() >= place(*permissions).bottom());
        QTRY_VERIFY(place(*label(window, u"General"_s)).top() >= place(*shown).bottom());
        QTRY_VERIFY(shown->height() >= shown->heightForWidth(shown->width()));

        WelcomeWindow later(state());
        QVERIFY(label(later, sentence));
        limits().setMissing({});
        QVERIFY(!shown->isVisible());
    }

    void nothingNamesAnotherSystem()
    {
        static const QRegularExpression foreign(
            u"\\bMac\\b|macOS|Finder|Apple|Screen Recording|delay"_s);
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
        QVERIFY(label(window, u"Instant mode off"_s));
        QVERIFY(label(window, u"Save them at once"_s));
        QVERIFY(label(window, u"Turn on instant screenshots"_s));
        QVERIFY(button(window, u"Make Instant"_s));
        QVERIFY(!label(window, u"Instant mode on"_s));
    }

    void instantModeOnIsSaidEverywhere()
    {
        const WelcomeWindow window(state(true));
        QVERIFY(label(window, u"Instant mode on"_s));
        QVERIFY(label(window, u"Saved at once"_s));
        QVERIFY(label(window, u"Instant screenshots are on"_s));
        QVERIFY(button(window, u"Instant Mode On"_s));
        QVERIFY(button(window, u"Instant Mode On"_s)->isEnabled());
        QVERIFY(!label(window, u"Instant mode off"_s));
    }

    void theWindowIsASnapshot()
    {
        WelcomeWindow window(state(true));
        QVERIFY(showActive(window));
        window.close();
        VelmoraSettings::setTrayPosition(TrayPosition::topLeft);
        QVERIFY(showActive(window));
        QVERIFY(label(window, u"Instant mode on"_s));
        QCOMPARE(popUp(window, u"Tray position"_s)->currentText(), u"Bottom-right"_s);
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
        WelcomeWindow window(state(false, false, u"/"_s));
        QVERIFY(showActive(window));
        const QLabel *onCard = label(window, u"Selected"_s);
        QVERIFY(onCard);
        QVERIFY(place(*onCard).left() > place(*label(window, u"Private"_s)).right());
        const int checklistRow = place(*label(window, u"Screenshot folder selected"_s)).bottom();
        const int nextRow = place(*label(window, u"Smart naming is active"_s)).top();
        int inChecklist = 0;
        const QList<QLabel *> paths = labels(window, u"/"_s);
        for (const QLabel *path : paths) {
            const QRect where = place(*path);
            inChecklist += where.top() >= checklistRow && where.bottom() <= nextRow ? 1 : 0;
        }
        QCOMPARE(inChecklist, 1);
        QCOMPARE(paths.size(), 3);
    }
};

VELMORA_WIDGETS_TEST(WelcomeWindowTextsTest)
#include "WelcomeWindowTextsTest.moc"
