// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QList>
#include <QObject>

class StatusItem;

/// The item in the status bar and the commands of its menu. Main thread.
class StatusMenu : public QObject
{
    Q_OBJECT
public:
    explicit StatusMenu(StatusItem &item, QObject *parent = nullptr);

    /// The menu's items, top to bottom, including separators. A window that adds them offers their
    /// shortcuts.
    QList<QAction *> actions() const { return m_actions; }

    /// Shows the item in the status bar.
    void show();

    void updateStatusItemTitle();

    /// Triggers the item of this name, when asked from outside: "recent", "undo", "instant",
    /// "reveal" or "quit". Other names and disabled items do nothing.
    void trigger(const QString &name);

    /// The undo item, whose title and state follow the undo history.
    void setUndo(const QString &title, bool enabled);

Q_SIGNALS:
    void showStatusRequested();
    void recentScreenshotsRequested();
    void undoRequested();
    void instantModeRequested();
    void revealFolderRequested();
    void quitRequested();

private:
    QAction *addItem(const QString &name, const QString &title, void (StatusMenu::*request)(),
                     const QKeySequence &keyEquivalent = {});

    StatusItem &m_item;
    QList<QAction *> m_actions;
    QAction *m_undoMenuItem = nullptr;
};
