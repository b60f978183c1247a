// SPDX-License-Identifier: MIT
#pragma once

#include "files/RenameResult.h"
#include "files/UndoableAction.h"

#include <QUuid>

#include <variant>

/// A request from a tray row to its controller. Each carries the row's id.
struct ScreenshotRowAction {
    struct Copy {
    };
    /// Have the row rename its file to the name in its field.
    struct Rename {
    };
    /// The row has renamed its file itself.
    struct Renamed {
        RenameResult result;
    };
    struct Reveal {
    };
    struct Trash {
    };
    struct Undo {
        UndoableAction action;
    };
    struct Close {
    };

    QUuid id;
    std::variant<Copy, Rename, Renamed, Reveal, Trash, Undo, Close> what;
};
