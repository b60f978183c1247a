// SPDX-License-Identifier: MIT
#include "files/reverseAction.h"

#include "filesystem/FileUrls.h"
#include "filesystem/moveFile.h"
#include "platform/SystemTrash.h"

std::error_code reverseAction(SystemTrash &trash, const UndoableAction &action)
{
    if (!FileUrls::exists(action.after))
        return std::make_error_code(std::errc::no_such_file_or_directory);
    if (FileUrls::exists(action.before))
        return std::make_error_code(std::errc::file_exists);
    switch (action.kind) {
    case UndoableAction::Kind::Rename:
        return moveFile(action.after, action.before);
    case UndoableAction::Kind::Trash:
        return trash.restore(action.after, action.before);
    }
    return std::make_error_code(std::errc::invalid_argument);
}
