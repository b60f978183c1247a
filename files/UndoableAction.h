// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

/// A rename, or a move to the trash, that can be undone.
struct UndoableAction {
    enum class Kind { Rename, Trash };

    static UndoableAction rename(const QUrl &oldURL, const QUrl &newURL)
    {
        return {Kind::Rename, oldURL, newURL};
    }
    static UndoableAction trash(const QUrl &originalURL, const QUrl &trashedURL)
    {
        return {Kind::Trash, originalURL, trashedURL};
    }

    Kind kind;
    /// Where the file was before: the destination of an undo.
    QUrl before;
    /// Where the action left the file: the source of an undo.
    QUrl after;

    bool operator==(const UndoableAction &) const = default;
};
