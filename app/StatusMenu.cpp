// SPDX-License-Identifier: MIT
#include "app/StatusMenu.h"

#include "platform/StatusItem.h"
#include "style/SymbolImages.h"
#include "style/VelmoraPalette.h"

#include <QKeySequence>

using namespace Qt::StringLiterals;

StatusMenu::StatusMenu(StatusItem &item, QObject *parent) : QObject(parent), m_item(item)
{
    addItem(u"status"_s, u"Show Status"_s, &StatusMenu::showStatusRequested);
    addItem(u"recent"_s, u"Show Recent Screenshots"_s, &StatusMenu::recentScreenshotsRequested,
            QKeySequence(Qt::CTRL | Qt::Key_R));
    m_undoMenuItem = addItem(u"undo"_s, u"Undo Last Action"_s, &StatusMenu::undoRequested,
                             QKeySequence(Qt::CTRL | Qt::Key_Z));
    m_undoMenuItem->setEnabled(false);
    addItem(u"instant"_s, u"Make Screenshots Instant"_s, &StatusMenu::instantModeRequested);
    addItem(u"reveal"_s, u"Reveal Screenshot Folder"_s, &StatusMenu::revealFolderRequested);
    auto *separator = new QAction(this);
    separator->setSeparator(true);
    m_actions.append(separator);
    addItem(u"quit"_s, u"Quit Velmora"_s, &StatusMenu::quitRequested,
            QKeySequence(Qt::CTRL | Qt::Key_Q));
}

void StatusMenu::show()
{
    m_item.show(symbolIcon(u"camera.viewfinder"_s, VelmoraPalette::primaryText()), u"Velmora"_s,
                m_actions);
    updateStatusItemTitle();
}

void StatusMenu::updateStatusItemTitle()
{
    // The leading space sets the text apart from the symbol.
    m_item.setTitle(u" Velmora"_s);
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
