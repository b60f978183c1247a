// SPDX-License-Identifier: MIT
#include "tests/app/welcome/WelcomeRig.h"

#include "style/lightAppearance.h"
#include "tests/world/TestProgram.h"

#include <QContextMenuEvent>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeView>

using namespace Qt::StringLiterals;
using WelcomeWindowParts::button;
using WelcomeWindowParts::label;

namespace
{

const QStringList folderExplanation = {
    u"Screenshot folder access"_s,
    u"Choose the folder where your desktop saves screenshots. Velmora watches only that folder so it can rename new screenshots."_s};
const QStringList loginExplanation = {
    u"Start at login"_s,
    u"Velmora will ask your desktop to open it when you sign in. You can turn this off here anytime."_s};

/// Whether the condition holds now and for another half second.
template <typename Condition>
bool staysSo(Condition condition)
{
    return condition() && !QTest::qWaitFor([&condition] { return !condition(); }, 500);
}

bool isStored(const QString &key)
{
    return VelmoraSettings::open().value(key).toBool();
}

} // namespace

class WelcomeControllerTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folders;

    QString folder(const QString &name) const
    {
        const QString path = m_folders.filePath(name);
        QDir().mkpath(path);
        return path;
    }

private Q_SLOTS:
    void initTestCase() { applyLightAppearance(); }
    void init() { VelmoraSettings::open().clear(); }

    void theFolderIsExplainedOnce()
    {
        WelcomeRig rig(folder(u"old"_s));
        rig.show();
        rig.press(u"Change Folder"_s);
        QTRY_COMPARE(rig.alert(), folderExplanation);
        QVERIFY(!isStored(u"didExplainFolderAccess"_s));
        rig.pressOk();
        QTRY_VERIFY(rig.panel());
        QVERIFY(isStored(u"didExplainFolderAccess"_s));
        rig.panel()->reject();
        QTRY_VERIFY(rig.dialogs().isEmpty());
        rig.press(u"Change Folder"_s);
        QTRY_VERIFY(rig.panel());
        QVERIFY(rig.alert().isEmpty());
    }

    void whereTheKeyHasAFixedFolderChangeFolderSaysSo()
    {
        const QString sentence =
            u"The screenshot key of this desktop goes on saving where it does now."_s;
        WelcomeRig rig(folder(u"old"_s));
        rig.preferences->isFixed = true;
        rig.show();
        QCOMPARE(WelcomeWindowParts::button(*rig.window(), u"Change Folder"_s)->toolTip(),
                 sentence);
        rig.press(u"Change Folder"_s);
        QTRY_COMPARE(rig.alert(),
                     (QStringList{folderExplanation[0], folderExplanation[1] + u' ' + sentence}));
        rig.pressOk();
        QTRY_VERIFY(rig.panel());
        rig.panel()->reject();
        QTRY_VERIFY(rig.dialogs().isEmpty());
    }

    void startAtLoginIsExplainedOnceAndOnlyWhenItIsTurnedOn()
    {
        WelcomeRig rig(folder(u"old"_s));
        rig.login->enabled = true;
        rig.show();
        rig.press(u"Start at login"_s);
        QVERIFY(rig.alert().isEmpty());
        QVERIFY(!rig.login->enabled);
        rig.press(u"Start at login"_s);
        QTRY_COMPARE(rig.alert(), loginExplanation);
        QVERIFY(!rig.login->enabled);
        rig.pressOk();
        QTRY_VERIFY(rig.login->enabled);
        QVERIFY(isStored(u"didExplainStartAtLogin"_s));
        rig.press(u"Start at login"_s);
        rig.press(u"Start at login"_s);
        QVERIFY(rig.alert().isEmpty());
        QVERIFY(rig.login->enabled);
        QCOMPARE(rig.login->calls, 4);
    }

    void anExplanationThatIsClosedHasBeenRead()
    {
        WelcomeRig rig(folder(u"old"_s));
        rig.show();
        rig.press(u"Start at login"_s);
        QTRY_COMPARE(rig.alert(), loginExplanation);
        QTest::keyClick(rig.dialogs().first(), Qt::Key_Escape);
        QTRY_VERIFY(rig.login->enabled);
        QVERIFY(isStored(u"didExplainStartAtLogin"_s));
    }

    void instantModeIsStoredAndShownAfreshEachTime()
    {
        WelcomeRig rig(folder(u"old"_s));
        rig.show();
        const QPointer<WelcomeWindow> first = rig.window();
        rig.press(u"Make Instant"_s);
        QTRY_VERIFY(!first);
        const QPointer<WelcomeWindow> second = rig.window();
        QVERIFY(label(*second, u"Instant mode on"_s));
        rig.press(u"Instant Mode On"_s);
        QTRY_VERIFY(!second);
        QVERIFY(label(*rig.window(), u"Instant mode on"_s));
        QCOMPARE(rig.preferences->thumbnailWrites, 2);
        QCOMPARE(rig.preferences->shows, false);
    }

    void theWindowStaysASnapshot()
    {
        WelcomeRig rig(folder(u"old"_s));
        rig.preferences->shows = false;
        rig.show();
        WelcomeWindow *window = rig.window();
        rig.preferences->shows = true;
        rig.login->enabled = true;
        rig.controller->showWelcome(QUrl(u"file:///somewhere/else"_s));
        QCOMPARE(rig.window(), window);
        rig.controller->closeWelcome();
        QVERIFY(!rig.window());
        rig.controller->showWelcome(QUrl(u"file:///somewhere/else"_s));
        QCOMPARE(rig.window(), window);
        QVERIFY(label(*window, u"Instant mode on"_s));
        QVERIFY(!button(*window, u"Start at login"_s)->isChecked());
        QVERIFY(WelcomeWindowParts::labels(*window, u"/somewhere/else"_s).isEmpty());
    }

    void aChosenFolderIsStoredReportedAndShown_data()
    {
        QTest::addColumn<QString>("chosen");
        QTest::newRow("another") << folder(u"new"_s);
        QTest::newRow("the same again") << folder(u"old"_s);
    }

    void aChosenFolderIsStoredReportedAndShown()
    {
        QFETCH(const QString, chosen);
        VelmoraSettings::open().setValue(u"didExplainFolderAccess"_s, true);
        WelcomeRig rig(folder(u"old"_s));
        rig.show();
        const QPointer<WelcomeWindow> first = rig.window();
        const QSignalSpy reported(rig.controller.get(), &WelcomeController::folderChosen);
        rig.press(u"Change Folder"_s);
        rig.use(chosen);
        QTRY_COMPARE(reported.count(), 1);
        QCOMPARE(reported[0][0].toUrl(), QUrl::fromLocalFile(chosen));
        QCOMPARE(rig.preferences->locationWrites, 1);
        QCOMPARE(rig.preferences->stored, chosen);
        QTRY_VERIFY(!first);
        QCOMPARE(WelcomeWindowParts::labels(*rig.window(), chosen).size(), 2);
        QVERIFY(staysSo([&rig] { return rig.window() && rig.dialogs().isEmpty(); }));
    }

    void thePanelBeginsInTheCurrentFolderAndOffersOnlyFoldersOfThisComputer()
    {
        VelmoraSettings::open().setValue(u"didExplainFolderAccess"_s, true);
        WelcomeRig rig(folder(u"old"_s));
        rig.show();
        rig.press(u"Change Folder"_s);
        QTRY_VERIFY(rig.panel());
        QCOMPARE(rig.panel()->windowTitle(), u"Choose Screenshot Folder"_s);
        QCOMPARE(rig.panel()->labelText(QFileDialog::Accept), u"Use Folder"_s);
        QCOMPARE(rig.panel()->fileMode(), QFileDialog::Directory);
        QVERIFY(rig.panel()->testOption(QFileDialog::ShowDirsOnly));
        QCOMPARE(rig.panel()->supportedSchemes(), QStringList(u"file"_s));
        QCOMPARE(rig.panel()->directory().path(), folder(u"old"_s));
    }

    void thePanelOnlyChooses()
    {
        VelmoraSettings::open().setValue(u"didExplainFolderAccess"_s, true);
        const QString inner = folder(u"outer/inner"_s);
        WelcomeRig rig(folder(u"outer"_s));
        rig.show();
        rig.press(u"Change Folder"_s);
        QTRY_VERIFY(rig.panel());
        auto *list = rig.panel()->findChild<QTreeView *>();
        QVERIFY(list);
        QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), 1);
        list->setCurrentIndex(list->model()->index(0, 0, list->rootIndex()));
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Delete);
        const QPoint middle = list->rect().center();
        QContextMenuEvent menu(QContextMenuEvent::Mouse, middle, list->mapToGlobal(middle));
        QApplication::sendEvent(list->viewport(), &menu);
        QVERIFY(staysSo([&] {
            return rig.dialogs().size() == 1 && !QApplication::activePopupWidget() &&
                   QDir(inner).exists();
        }));
    }

    void aCancelledPanelChangesNothing()
    {
        VelmoraSettings::open().setValue(u"didExplainFolderAccess"_s, true);
        WelcomeRig rig(folder(u"old"_s));
        rig.show();
        WelcomeWindow *window = rig.window();
        const QSignalSpy reported(rig.controller.get(), &WelcomeController::folderChosen);
        rig.press(u"Change Folder"_s);
        QTRY_VERIFY(rig.panel());
        QTest::keyClick(rig.panel(), Qt::Key_Escape);
        QTRY_VERIFY(rig.dialogs().isEmpty());
        QVERIFY(staysSo([&] { return rig.window() == window && reported.isEmpty(); }));
        QCOMPARE(rig.preferences->locationWrites, 0);
    }

    void aRefusedFolderLeavesTheOldOneAndSaysWhy_data()
    {
        QTest::addColumn<QString>("chosen");
        QTest::addColumn<QString>("reason");
        const QString missing = m_folders.filePath(u"missing"_s);
        const QString file = m_folders.filePath(u"file"_s);
        QVERIFY(QFile(file).open(QFile::WriteOnly));
        QTest::newRow("missing") << missing << QString(u"There is no folder "_s + missing + u'.');
        QTest::newRow("file") << file << QString(file + u" is not a folder."_s);
    }

    void aRefusedFolderLeavesTheOldOneAndSaysWhy()
    {
        QFETCH(const QString, chosen);
        QFETCH(const QString, reason);
        VelmoraSettings::open().setValue(u"didExplainFolderAccess"_s, true);
        WelcomeRig rig(folder(u"old"_s));
        rig.show();
        const QSignalSpy reported(rig.controller.get(), &WelcomeController::folderChosen);
        rig.press(u"Change Folder"_s);
        rig.use(chosen);
        QTRY_COMPARE(rig.alert(), QStringList({u"This folder can't be used"_s,
                                               QString(reason + u" Velmora goes on watching "_s +
                                                       folder(u"old"_s) + u'.')}));
        rig.pressOk();
        QTRY_VERIFY(rig.panel());
        QCOMPARE(reported.count(), 0);
        QCOMPARE(rig.preferences->locationWrites, 0);
        rig.use(folder(u"new"_s));
        QTRY_COMPARE(reported.count(), 1);
    }

    void dialogsEndWithTheWindow_data()
    {
        QTest::addColumn<int>("deep");
        QTest::addColumn<bool>("rebuilt");
        for (const bool rebuilt : {true, false}) {
            const char *how = rebuilt ? "rebuilt" : "hidden";
            QTest::addRow("alert, %s", how) << 0 << rebuilt;
            QTest::addRow("panel, %s", how) << 1 << rebuilt;
            QTest::addRow("refusal, %s", how) << 2 << rebuilt;
        }
    }

    void dialogsEndWithTheWindow()
    {
        QFETCH(const int, deep);
        QFETCH(const bool, rebuilt);
        WelcomeRig rig(folder(u"old"_s));
        rig.show();
        const QSignalSpy reported(rig.controller.get(), &WelcomeController::folderChosen);
        rig.press(u"Change Folder"_s);
        QTRY_COMPARE(rig.alert(), folderExplanation);
        if (deep > 0)
            rig.pressOk();
        if (deep > 1)
            rig.use(u"/there/is/no/such/folder"_s);
        QTRY_COMPARE(rig.dialogs().size(), 1);
        QTRY_COMPARE(rig.panel() != nullptr, deep == 1);
        const QPointer<QDialog> open = rig.dialogs().first();
        if (rebuilt)
            rig.controller->optimizeScreenshotSpeed();
        else
            rig.controller->closeWelcome();
        QTRY_VERIFY(!open);
        QVERIFY(staysSo([&] { return rig.dialogs().isEmpty(); }));
        QCOMPARE(rig.window() != nullptr, rebuilt);
        QCOMPARE(reported.count(), 0);
        QCOMPARE(isStored(u"didExplainFolderAccess"_s), deep > 0);
        // The next one works like the first.
        rig.show();
        rig.press(u"Change Folder"_s);
        QTRY_COMPARE(rig.dialogs().size(), 1);
    }

    void anOpenPopUpEndsWithTheWindow()
    {
        WelcomeRig rig(folder(u"old"_s));
        rig.show();
        OptionPopUp *popUp = WelcomeWindowParts::popUp(*rig.window(), u"Tray position"_s);
        popUp->showPopup();
        QTRY_VERIFY(QApplication::activePopupWidget());
        rig.controller->optimizeScreenshotSpeed();
        QTRY_VERIFY(!QApplication::activePopupWidget());
        QVERIFY(staysSo([&] { return rig.window() != nullptr; }));
    }

    void closingTheControllerEndsADialog()
    {
        auto rig = std::make_unique<WelcomeRig>(folder(u"old"_s));
        rig->show();
        rig->press(u"Change Folder"_s);
        QTRY_COMPARE(rig->dialogs().size(), 1);
        rig.reset();
        QVERIFY(WelcomeRig::dialogs().isEmpty());
    }
};

VELMORA_WIDGETS_TEST(WelcomeControllerTest)
#include "WelcomeControllerTest.moc"
