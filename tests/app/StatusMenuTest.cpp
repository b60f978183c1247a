// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include "platform/StatusItem.h"
#include "tests/fakes/FakeStatusItem.h"
#include "tests/world/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

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
        QCOMPARE(item.title, QStringLiteral(" Velmora"));
        QCOMPARE(item.toolTip, QStringLiteral("Velmora"));
    }

    void theItemsStandInTheirOrder()
    {
        FakeStatusItem item;
        StatusMenu menu(item);
        menu.show();
        QStringList titles;
        for (const QAction *action : item.actions)
            titles.append(action->isSeparator() ? QStringLiteral("-") : action->text());
        QCOMPARE(titles, QStringList({QStringLiteral("Show Status"),
                                      QStringLiteral("Show Recent Screenshots"),
                                      QStringLiteral("Undo Last Action"),
                                      QStringLiteral("Make Screenshots Instant"),
                                      QStringLiteral("Reveal Screenshot Folder"),
                                      QStringLiteral("-"), QStringLiteral("Quit Velmora")}));
        QCOMPARE(item.actions[1]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_R));
        QCOMPARE(item.actions[2]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Z));
        QCOMPARE(item.actions[6]->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    }

    void eachItemAsksForItsCommand()
    {
        FakeStatusItem item;
        StatusMenu menu(item);
        menu.show();
        menu.setUndo(QStringLiteral("Undo Rename"), true);
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
        menu.setUndo(QStringLiteral("Undo Trash"), true);
        QVERIFY(item.actions[2]->isEnabled());
        QCOMPARE(item.actions[2]->text(), QStringLiteral("Undo Trash"));
    }
};

VELMORA_WIDGETS_TEST(StatusMenuTest)
#include "StatusMenuTest.moc"
