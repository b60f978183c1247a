// SPDX-License-Identifier: MIT
#include "tests/app/AppRig.h"

#include "app/welcome/OptionPopUp.h"
#include "core/VelmoraSettings.h"
#include "tests/fakes/FakeFileBrowser.h"
#include "tests/fakes/FakeStatusItem.h"
#include "tests/world/TestProgram.h"

#include <QAction>
#include <QElapsedTimer>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

class Rig : public AppRig
{
public:
    Rig()
    {
        item = new FakeStatusItem;
        platform.statusItem.reset(item);
        browser = new FakeFileBrowser;
        platform.fileBrowser.reset(browser);
    }

    void act(const QString &name) { Q_EMIT platform.runningInstance->actionRequested(name); }

    static QWidget *welcomeWindow()
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->inherits("WelcomeWindow"))
                return window;
        }
        return nullptr;
    }

    static QWidget *recentWindow() { return windowTitled(u"Recent Screenshots"_s); }

    /// Takes a screenshot, and waits until it has its name.
    void takeNamed() const
    {
        take(u"Screenshot.png"_s);
        QTRY_COMPARE(filesInFolder(), QStringList(u"safari-harvest-festival-invitation.png"_s));
    }

    FakeStatusItem *item;
    FakeFileBrowser *browser;
};

} // namespace

/// The program's windows and the ways to open and control them, on the real coordinator.
class WindowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { AppRig::clear(); }

    void theWelcomeWindowComesAThirdOfASecondAfterTheLaunch()
    {
        Rig rig;
        QElapsedTimer sinceLaunch;
        sinceLaunch.start();
        rig.launch();
        qint64 shownAfter = 0;
        QVERIFY(QTest::qWaitFor([&] {
            shownAfter = sinceLaunch.elapsed();
            return Rig::welcomeWindow() != nullptr;
        }));
        QVERIFY2(shownAfter >= 350, qPrintable(QString::number(shownAfter)));
        QVERIFY2(shownAfter < 1500, qPrintable(QString::number(shownAfter)));
    }

    void anActionAtTheStartOpensOnlyWhatItAsksFor_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<bool>("welcome");
        QTest::addColumn<bool>("recent");
        QTest::newRow("recent") << u"recent"_s << false << true;
        QTest::newRow("undo") << u"undo"_s << false << false;
        QTest::newRow("reveal") << u"reveal"_s << false << false;
        QTest::newRow("instant") << u"instant"_s << true << false;
    }

    void anActionAtTheStartOpensOnlyWhatItAsksFor()
    {
        QFETCH(const QString, action);
        QFETCH(const bool, welcome);
        QFETCH(const bool, recent);
        Rig rig;
        rig.launch();
        rig.act(action);
        const auto isElse = [&] {
            return (Rig::welcomeWindow() != nullptr) != welcome ||
                   (Rig::recentWindow() != nullptr) != recent;
        };
        QVERIFY(!isElse());
        QVERIFY(!QTest::qWaitFor(isElse, 1000));
        QCOMPARE(rig.browser->revealed.size(), action == u"reveal" ? 1 : 0);
        Q_EMIT rig.platform.runningInstance->reopened();
        QVERIFY(Rig::welcomeWindow());
    }

    void theUndoItemIsDisabledAgainWhenNothingIsLeft()
    {
        Rig rig;
        rig.launch();
        QAction *undo = rig.item->actions.at(2);
        QVERIFY(!undo->isEnabled());
        rig.takeNamed();
        QTRY_VERIFY(undo->isEnabled());
        QCOMPARE(undo->text(), u"Undo Rename"_s);
        undo->trigger();
        QTRY_VERIFY(AppRig::filesInFolder().constFirst().startsWith(u"safari-screen-"_s));
        QVERIFY(undo->isEnabled());
        undo->trigger();
        QTRY_COMPARE(AppRig::filesInFolder(), QStringList(u"Screenshot.png"_s));
        QTRY_VERIFY(!undo->isEnabled());
        QCOMPARE(undo->text(), u"Undo Last Action"_s);
    }

    void thePopUpMovesThePanelToItsCorner()
    {
        Rig rig;
        rig.launch();
        rig.takeNamed();
        QTRY_VERIFY(Rig::welcomeWindow());
        QTRY_COMPARE(AppRig::rows().size(), 1);
        const QWidget *panel = AppRig::rows().constFirst()->window();
        const QPoint middle = panel->screen()->availableGeometry().center();
        const auto isLeft = [&] { return panel->geometry().center().x() < middle.x(); };
        const auto isTop = [&] { return panel->geometry().center().y() < middle.y(); };
        QVERIFY(!isLeft() && !isTop());
        OptionPopUp *position = nullptr;
        for (auto *each : Rig::welcomeWindow()->findChildren<OptionPopUp *>()) {
            if (each->accessibleName() == u"Tray position")
                position = each;
        }
        QVERIFY(position);
        position->setFocus();
        for (const bool left : {false, true, true}) {
            QTest::keyClick(position, Qt::Key_Down);
            const bool top = position->currentIndex() != 2;
            QTRY_VERIFY(isLeft() == left && isTop() == top);
        }
        QVERIFY(VelmoraSettings::trayPosition() == TrayPosition::topLeft);
    }
};

VELMORA_WIDGETS_TEST(WindowsTest)
#include "WindowsTest.moc"
