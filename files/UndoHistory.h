// SPDX-License-Identifier: MIT
#pragma once

#include "files/UndoableAction.h"

#include <QList>
#include <QObject>

#include <optional>

/// The latest renames and moves to the trash, at most ten, which the status menu undoes one by one,
/// newest first. It lives as long as the process. Main thread.
class UndoHistory : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Oldest first.
    const QList<UndoableAction> &actions() const { return m_actions; }

    bool canUndo() const { return !m_actions.isEmpty(); }

    /// "Undo Rename" or "Undo Trash", depending on the newest action; "Undo Last Action" without
    /// one.
    QString title() const;

    void push(const UndoableAction &action);

    /// Removes and returns the newest action; nothing if there is none.
    std::optional<UndoableAction> takeNewest();

    /// Removes the newest entry of an action that was undone elsewhere.
    void remove(const UndoableAction &action);

Q_SIGNALS:
    /// `canUndo` and `title` may have changed.
    void changed();

private:
    QList<UndoableAction> m_actions;
};
