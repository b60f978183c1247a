// SPDX-License-Identifier: MIT
#include "style/lightAppearance.h"
#include "tests/app/welcome/WelcomeWindowParts.h"
#include "tests/world/TestProgram.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QSignalSpy>
#include <QWheelEvent>

#include <utility>
#include <vector>

using namespace WelcomeWindowParts;

class WelcomeWindowControlsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { applyLightAppearance(); }
    void init() { VelmoraSettings::open().clear(); }

    void eachButtonTellsWhatItIsForAndNothingElse()
    {
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        using Wish = void (WelcomeWindow::*)();
        const std::vector<std::pair<QString, Wish>> wishes = {
            {QStringLiteral("Make Instant"), &WelcomeWindow::instantModeRequested},
            {QStringLiteral("Change Folder"), &WelcomeWindow::changeFolderRequested},
            {QStringLiteral("Recent Screenshots"), &WelcomeWindow::recentScreenshotsRequested},
            {QStringLiteral("Done"), &WelcomeWindow::doneRequested},
            {QStringLiteral("Feedback"), &WelcomeWindow::feedbackRequested},
        };
        QStringList told;
        for (const auto &[title, wish] : wishes)
            connect(&window, wish, this, [&told, title = title] { told.append(title); });
        for (const auto &[title, wish] : wishes) {
            QTest::mouseClick(button(window, title), Qt::LeftButton);
            QCOMPARE(told, QStringList(title));
            told.clear();
        }
        QVERIFY(window.isVisible());
    }

    void theInstantButtonWorksAlsoWhenTheModeIsOn()
    {
        WelcomeWindow window(state(true));
        QVERIFY(showActive(window));
        const QSignalSpy asked(&window, &WelcomeWindow::instantModeRequested);
        QTest::mouseClick(button(window, QStringLiteral("Instant Mode On")), Qt::LeftButton);
        QCOMPARE(asked.count(), 1);
    }

    void startAtLoginShowsItsStateAndTellsEachChange()
    {
        const WelcomeWindow on(state(false, true));
        QVERIFY(button(on, QStringLiteral("Start at login"))->isChecked());

        WelcomeWindow window(state(false, false));
        QVERIFY(showActive(window));
        QAbstractButton *box = button(window, QStringLiteral("Start at login"));
        QVERIFY(!box->isChecked());
        const QSignalSpy changed(&window, &WelcomeWindow::startAtLoginChanged);
        const QPoint onTheBox(8, box->height() / 2);
        QTest::mouseClick(box, Qt::LeftButton, {}, onTheBox);
        QTest::mouseClick(box, Qt::LeftButton, {}, onTheBox);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed[0][0].toBool(), true);
        QCOMPARE(changed[1][0].toBool(), false);
    }

    void thePopUpsOfferEveryCaseInItsOrder()
    {
        const WelcomeWindow window(state());
        QCOMPARE(titles(*popUp(window, QStringLiteral("Auto-copy"))),
                 QStringList({QStringLiteral("Do nothing"), QStringLiteral("Copy picture"),
                              QStringLiteral("Copy file"), QStringLiteral("Copy picture + file")}));
        QCOMPARE(titles(*popUp(window, QStringLiteral("Tray duration"))),
                 QStringList({QStringLiteral("15 seconds"), QStringLiteral("60 seconds"),
                              QStringLiteral("Until dismissed")}));
        QCOMPARE(titles(*popUp(window, QStringLiteral("Tray position"))),
                 QStringList({QStringLiteral("Bottom-right"), QStringLiteral("Top-right"),
                              QStringLiteral("Bottom-left"), QStringLiteral("Top-left")}));
    }

    void thePopUpsShowTheFallbacksAtFirst()
    {
        const WelcomeWindow window(state());
        QCOMPARE(popUp(window, QStringLiteral("Auto-copy"))->currentIndex(), 0);
        QCOMPARE(popUp(window, QStringLiteral("Tray duration"))->currentIndex(), 1);
        QCOMPARE(popUp(window, QStringLiteral("Tray position"))->currentIndex(), 0);
    }

    void thePopUpsShowWhatIsStored()
    {
        VelmoraSettings::setCopyBehavior(CopyBehavior::imageAndFile);
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        VelmoraSettings::setTrayPosition(TrayPosition::bottomLeft);
        const WelcomeWindow window(state());
        QCOMPARE(popUp(window, QStringLiteral("Auto-copy"))->currentIndex(), 3);
        QCOMPARE(popUp(window, QStringLiteral("Tray duration"))->currentIndex(), 2);
        QCOMPARE(popUp(window, QStringLiteral("Tray position"))->currentIndex(), 2);
    }

    void aPickIsToldByItsIndexAndNotStoredByTheWindow_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("downs");
        QTest::addColumn<int>("copied");
        QTest::addColumn<int>("lasting");
        QTest::addColumn<int>("placed");
        QTest::newRow("copy file") << "Auto-copy" << 2 << 2 << -1 << -1;
        QTest::newRow("until dismissed") << "Tray duration" << 1 << -1 << 2 << -1;
        QTest::newRow("top left") << "Tray position" << 3 << -1 << -1 << 3;
        QTest::newRow("the same again") << "Tray position" << 0 << -1 << -1 << 0;
    }

    void aPickIsToldByItsIndexAndNotStoredByTheWindow()
    {
        QFETCH(const QString, name);
        QFETCH(const int, downs);
        QFETCH(const int, copied);
        QFETCH(const int, lasting);
        QFETCH(const int, placed);
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        const QSignalSpy copy(&window, &WelcomeWindow::copyBehaviorPicked);
        const QSignalSpy duration(&window, &WelcomeWindow::trayDurationPicked);
        const QSignalSpy position(&window, &WelcomeWindow::trayPositionPicked);

        OptionPopUp *used = popUp(window, name);
        QTest::mouseClick(used, Qt::LeftButton);
        QAbstractItemView *list = used->view();
        QVERIFY(QTest::qWaitForWindowExposed(list->window()));
        for (int i = 0; i < downs; ++i)
            QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_Return);

        const auto last = [](const QSignalSpy &spy) {
            return spy.isEmpty() ? -1 : spy.constLast().constFirst().toInt();
        };
        QCOMPARE(last(copy), copied);
        QCOMPARE(last(duration), lasting);
        QCOMPARE(last(position), placed);
        QCOMPARE(copy.count() + duration.count() + position.count(), 1);
        QCOMPARE(VelmoraSettings::open().allKeys(), QStringList());
    }

    void theWheelChangesNoSetting()
    {
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        OptionPopUp *duration = popUp(window, QStringLiteral("Tray duration"));
        const QSignalSpy picked(&window, &WelcomeWindow::trayDurationPicked);
        duration->setFocus();
        const QPointF middle = duration->rect().center();
        QWheelEvent wheel(middle, duration->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(duration, &wheel);
        QCOMPARE(duration->currentIndex(), 1);
        QCOMPARE(picked.count(), 0);
    }

    void thePopUpsTextsFitTheirButtons()
    {
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        for (const OptionPopUp *each : window.findChildren<OptionPopUp *>())
            QVERIFY(each->width() >= each->sizeHint().width());
        for (const QAbstractButton *each : window.findChildren<QAbstractButton *>())
            QVERIFY(each->width() >= each->sizeHint().width());
    }

    void theControlsStandOnOneGrid()
    {
        WelcomeWindow window(state());
        QVERIFY(showActive(window));
        const QList<const QWidget *> leftEdge = {
            label(window, QStringLiteral("Setup checklist")),
            label(window, QStringLiteral("General")),
            label(window, QStringLiteral("Behavior")),
            button(window, QStringLiteral("Make Instant")),
            button(window, QStringLiteral("Change Folder")),
            popUp(window, QStringLiteral("Auto-copy")),
            button(window, QStringLiteral("Recent Screenshots")),
            label(window, QStringLiteral("Instant"))->parentWidget(),
        };
        for (const QWidget *part : leftEdge)
            QCOMPARE(place(*part).left(), 28);
        const QWidget *card = label(window, QStringLiteral("Private"))->parentWidget();
        QCOMPARE(place(*button(window, QStringLiteral("Start at login"))).left(),
                 place(*card).left());
        QCOMPARE(place(*popUp(window, QStringLiteral("Tray duration"))).left(),
                 place(*card).left());
        QCOMPARE(popUp(window, QStringLiteral("Tray duration"))->width(), card->width());
        QCOMPARE(place(*popUp(window, QStringLiteral("Tray position"))).right(), 620 - 28 - 1);
        QCOMPARE(place(*button(window, QStringLiteral("Feedback"))).right(), 620 - 28 - 1);
    }
};

VELMORA_WIDGETS_TEST(WelcomeWindowControlsTest)
#include "WelcomeWindowControlsTest.moc"
