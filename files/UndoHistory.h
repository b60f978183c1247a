#pragma once

#include "files/UndoableAction.h"

#include <QList>
#include <QObject>

#include <optional>

class SystemTrash;

/// The latest renames and trashes, at most ten, which the status menu takes back one by one, newest
/// first. It lives as long as the process. Main thread.
class UndoHistory : public QObject
{
    Q_OBJECT
public:
    explicit UndoHistory(SystemTrash &trash, QObject *parent = nullptr);

    /// Oldest first.
    const QList<UndoableAction> &actions() const { return m_actions; }

    bool canUndo() const { return !m_actions.isEmpty(); }

    /// "Undo Rename" or "Undo Trash" after the newest action, "Undo Last Action" without one.
    QString title() const;

    void push(const UndoableAction &action);

    /// Takes the newest action back. It leaves the history whatever becomes of it.
    /// @return where the file is again; nothing when it could not be done, which is all that is
    /// told.
    std::optional<QUrl> undoLast();

    /// The action has been taken back elsewhere: its newest entry leaves the history.
    void remove(const UndoableAction &action);

Q_SIGNALS:
    /// `canUndo` and `title` may have changed.
    void changed();

private:
    SystemTrash &m_trash;
    QList<UndoableAction> m_actions;
};
