// SPDX-License-Identifier: MIT
#pragma once

#include "files/UndoableAction.h"

#include <QList>
#include <QObject>

#include <optional>

/// The latest renames and trashes, at most ten, which the status menu takes back one by one, newest
/// first. It lives as long as the process. Main thread.
class UndoHistory : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Oldest first.
    const QList<UndoableAction> &actions() const { return m_actions; }

    bool canUndo() const { return !m_actions.isEmpty(); }

    /// "Undo Rename" or "Undo Trash" after the newest action, "Undo Last Action" without one.
    QString title() const;

    void push(const UndoableAction &action);

    /// The newest action, which leaves the history; nothing when there is none.
    std::optional<UndoableAction> takeNewest();

    /// The action has been taken back elsewhere: its newest entry leaves the history.
    void remove(const UndoableAction &action);

Q_SIGNALS:
    /// `canUndo` and `title` may have changed.
    void changed();

private:
    QList<UndoableAction> m_actions;
};
