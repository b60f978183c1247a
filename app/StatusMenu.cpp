// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include "platform/StatusItem.h"
#include "style/SymbolImages.h"
#include "style/VelmoraPalette.h"

#include <QKeySequence>

StatusMenu::StatusMenu(StatusItem &item, QObject *parent) : QObject(parent), m_item(item)
{
    addItem(QStringLiteral("status"), QStringLiteral("Show Status"),
            &StatusMenu::showStatusRequested);
    addItem(QStringLiteral("recent"), QStringLiteral("Show Recent Screenshots"),
            &StatusMenu::recentScreenshotsRequested, QKeySequence(Qt::CTRL | Qt::Key_R));
    m_undoMenuItem = addItem(QStringLiteral("undo"), QStringLiteral("Undo Last Action"),
                             &StatusMenu::undoRequested, QKeySequence(Qt::CTRL | Qt::Key_Z));
    m_undoMenuItem->setEnabled(false);
    addItem(QStringLiteral("instant"), QStringLiteral("Make Screenshots Instant"),
            &StatusMenu::instantModeRequested);
    addItem(QStringLiteral("reveal"), QStringLiteral("Reveal Screenshot Folder"),
            &StatusMenu::revealFolderRequested);
    auto *separator = new QAction(this);
    separator->setSeparator(true);
    m_actions.append(separator);
    addItem(QStringLiteral("quit"), QStringLiteral("Quit Velmora"), &StatusMenu::quitRequested,
            QKeySequence(Qt::CTRL | Qt::Key_Q));
}

void StatusMenu::show()
{
    m_item.show(symbolIcon(QStringLiteral("camera.viewfinder"), VelmoraPalette::primaryText()),
                QStringLiteral("Velmora"), m_actions);
    updateStatusItemTitle();
}

void StatusMenu::updateStatusItemTitle()
{
    // The leading space sets the text apart from the symbol.
    m_item.setTitle(QStringLiteral(" Velmora"));
}

void StatusMenu::trigger(const QString &name)
{
    for (QAction *action : std::as_const(m_actions)) {
        if (!name.isEmpty() && action->objectName() == name)
            action->trigger();
    }
}

void StatusMenu::setUndo(const QString &title, bool enabled)
{
    m_undoMenuItem->setText(title);
    m_undoMenuItem->setEnabled(enabled);
}

QAction *StatusMenu::addItem(const QString &name, const QString &title,
                             void (StatusMenu::*request)(), const QKeySequence &keyEquivalent)
{
    auto *action = new QAction(title, this);
    action->setObjectName(name);
    action->setShortcut(keyEquivalent);
    action->setMenuRole(QAction::NoRole);
    connect(action, &QAction::triggered, this, request);
    m_actions.append(action);
    return action;
}
