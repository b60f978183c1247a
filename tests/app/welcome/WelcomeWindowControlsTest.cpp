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

using namespace Qt::StringLiterals;
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
            {u"Make Instant"_s, &WelcomeWindow::instantModeRequested},
            {u"Change Folder"_s, &WelcomeWindow::changeFolderRequested},
            {u"Recent Screenshots"_s, &WelcomeWindow::recentScreenshotsRequested},
            {u"Done"_s, &WelcomeWindow::doneRequested},
            {u"Feedback"_s, &WelcomeWindow::feedbackRequested},
        };
        QStringList reported;
        for (const auto &[title, wish] : wishes)
            connect(&window, wish, this, [&reported, title = title] { reported.append(title); });
        for (const auto &[title, wish] : wishes) {
            QTest::mouseClick(button(window, title), Qt::LeftButton);
            QCOMPARE(reported, QStringList(title));
            reported.clear();
        }
        QVERIFY(window.isVisible());
    }

    void theInstantButtonWorksAlsoWhenTheModeIsOn()
    {
        WelcomeWindow window(state(true));
        QVERIFY(showActive(window));
        const QSignalSpy asked(&window, &WelcomeWindow::instantModeRequested);
        QTest::mouseClick(button(window, u"Instant Mode On"_s), Qt::LeftButton);
        QCOMPARE(asked.count(), 1);
    }

    void startAtLoginShowsItsStateAndTellsEachChange()
    {
        const WelcomeWindow on(state(false, true));
        QVERIFY(button(on, u"Start at login"_s)->isChecked());

        WelcomeWindow window(state(false, false));
        QVERIFY(showActive(window));
        QAbstractButton *box = button(window, u"Start at login"_s);
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
        QCOMPARE(titles(*popUp(window, u"Auto-copy"_s)),
                 QStringList({u"Do nothing"_s, u"Copy picture"_s, u"Copy file"_s,
                              u"Copy picture + file"_s}));
        QCOMPARE(titles(*popUp(window, u"Tray duration"_s)),
                 QStringList({u"15 seconds"_s, u"60 seconds"_s, u"Until dismissed"_s}));
        QCOMPARE(titles(*popUp(window, u"Tray position"_s)),
                 QStringList({u"Bottom-right"_s, u"Top-right"_s, u"Bottom-left"_s, u"Top-left"_s}));
    }

    void thePopUpsShowTheFallbacksAtFirst()
    {
        const WelcomeWindow window(state());
        QCOMPARE(popUp(window, u"Auto-copy"_s)->currentIndex(), 0);
        QCOMPARE(popUp(window, u"Tray duration"_s)->currentIndex(), 1);
        QCOMPARE(popUp(window, u"Tray position"_s)->currentIndex(), 0);
    }

    void thePopUpsShowWhatIsStored()
    {
        VelmoraSettings::setCopyBehavior(CopyBehavior::imageAndFile);
        VelmoraSettings::setTrayDuration(TrayDuration::untilDismissed);
        VelmoraSettings::setTrayPosition(TrayPosition::bottomLeft);
        const WelcomeWindow window(state());
        QCOMPARE(popUp(window, u"Auto-copy"_s)->currentIndex(), 3);
        QCOMPARE(popUp(window, u"Tray duration"_s)->currentIndex(), 2);
        QCOMPARE(popUp(window, u"Tray position"_s)->currentIndex(), 2);
    }

    void aChoiceIsReportedByItsIndexAndNotStoredByTheWindow_data()
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

    void aChoiceIsReportedByItsIndexAndNotStoredByTheWindow()
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
        OptionPopUp *duration = popUp(window, u"Tray duration"_s);
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
            label(window, u"Setup checklist"_s),
            label(window, u"General"_s),
            label(window, u"Behavior"_s),
            button(window, u"Make Instant"_s),
            button(window, u"Change Folder"_s),
            popUp(window, u"Auto-copy"_s),
            button(window, u"Recent Screenshots"_s),
            label(window, u"Instant"_s)->parentWidget(),
        };
        for (const QWidget *part : leftEdge)
            QCOMPARE(place(*part).left(), 28);
        const QWidget *card = label(window, u"Private"_s)->parentWidget();
        QCOMPARE(place(*button(window, u"Start at login"_s)).left(), place(*card).left());
        QCOMPARE(place(*popUp(window, u"Tray duration"_s)).left(), place(*card).left());
        QCOMPARE(popUp(window, u"Tray duration"_s)->width(), card->width());
        QCOMPARE(place(*popUp(window, u"Tray position"_s)).right(), 620 - 28 - 1);
        QCOMPARE(place(*button(window, u"Feedback"_s)).right(), 620 - 28 - 1);
    }
};

VELMORA_WIDGETS_TEST(WelcomeWindowControlsTest)
#include "WelcomeWindowControlsTest.moc"
