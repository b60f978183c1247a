// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include "platform/StatusItem.h"
#include "tests/fakes/FakeStatusItem.h"
#include "tests/world/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class StatusMenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theItemShowsItsSymbolTitleAndToolTip()
    {
        FakeStatusItem item;
        StatusMenu menu(item);
        menu.show();
        QVERIFY(item.hasIcon);
        QCOMPARE(item.title, u" Velmora"_s);
        QCOMPARE(item.toolTip, u"Velmora"_s);
    }

    void theItemsStandInTheirOrder()
    {
        FakeStatusItem item;
        StatusMenu menu(item);
        menu.show();
        QStringList titles;
        for (const QAction *action : item.actions)
            titles.append(action->isSeparator() ? u"-"_s : action->text());
        QCOMPARE(titles, QStringList({u"Show Status"_s, u"Show Recent Screenshots"_s,
                                      u"Undo Last Action"_s, u"Make Screenshots Instant"_s,
                                      u"Reveal Screenshot Folder"_s, u"-"_s, u"Quit Velmora"_s}));
        QCOMPARE(item.actions[1]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_R));
        QCOMPARE(item.actions[2]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Z));
        QCOMPARE(item.actions[6]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    }

    void eachItemAsksForItsCommand()
    {
        FakeStatusItem item;
        StatusMenu menu(item);
        menu.show();
        menu.setUndo(u"Undo Rename"_s, true);
        const QList<void (StatusMenu::*)()> requests = {
            &StatusMenu::showStatusRequested,   &StatusMenu::recentScreenshotsRequested,
            &StatusMenu::undoRequested,         &StatusMenu::instantModeRequested,
            &StatusMenu::revealFolderRequested, nullptr,
            &StatusMenu::quitRequested,
        };
        for (qsizetype index = 0; index < requests.size(); ++index) {
            if (!requests[index])
                continue;
            QSignalSpy spy(&menu, requests[index]);
            item.actions[index]->trigger();
            QCOMPARE(spy.count(), 1);
        }
    }

    void undoIsDisabledUntilThereIsSomethingToUndo()
    {
        FakeStatusItem item;
        StatusMenu menu(item);
        menu.show();
        QVERIFY(!item.actions[2]->isEnabled());
        menu.setUndo(u"Undo Trash"_s, true);
        QVERIFY(item.actions[2]->isEnabled());
        QCOMPARE(item.actions[2]->text(), u"Undo Trash"_s);
    }
};

VELMORA_WIDGETS_TEST(StatusMenuTest)
#include "StatusMenuTest.moc"
