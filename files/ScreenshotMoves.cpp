// SPDX-License-Identifier: MIT
#include "files/ScreenshotMoves.h"

#include "files/Screenshot.h"
#include "files/ScreenshotTrash.h"
#include "files/reverseAction.h"
#include "filesystem/FileUrls.h"
#include "filesystem/OpenFile.h"
#include "filesystem/moveFile.h"

namespace
{

std::error_code noSuchFile()
{
    return std::make_error_code(std::errc::no_such_file_or_directory);
}

ScreenshotRename failure(const std::error_code &error)
{
    return {ScreenshotRename::Outcome::Failed, std::nullopt, error};
}

bool isEmpty(const QUrl &url)
{
    const std::optional<FileIdentity> file = fileIdentity(url.toLocalFile());
    return file && file->size == 0;
}

} // namespace

ScreenshotRename ScreenshotMoves::rename(Screenshot &screenshot, const QString &name, Only only)
{
    screenshot.open();
    const QUrl source = screenshot.url();
    if (screenshot.isInTrash() || !screenshot.isAt(source))
        return failure(noSuchFile());
    if (only == Only::Filled && isEmpty(source))
        return {};
    const ScreenshotRename rename = renameScreenshot(source, name);
    if (!rename.result)
        return rename;
    const QUrl target = rename.result->newURL;
    if (!screenshot.isAt(target)) {
        // Another program put a different file there at the last moment.
        moveFile(target, source);
        return failure(noSuchFile());
    }
    screenshot.moved(target, Screenshot::Place::Folder);
    return rename;
}

ScreenshotMoves::Trashing ScreenshotMoves::trash(Screenshot &screenshot, SystemTrash &systemTrash)
{
    screenshot.open();
    const QUrl source = screenshot.url();
    if (screenshot.isInTrash() || !screenshot.isAt(source))
        return {noSuchFile(), std::nullopt};
    const ScreenshotTrash::Result result = ScreenshotTrash::move(systemTrash, source);
    if (!result.location)
        return {result.error, std::nullopt};
    screenshot.moved(*result.location, Screenshot::Place::Trash);
    return {{}, TrashResult{source, *result.location}};
}

std::error_code ScreenshotMoves::undo(Screenshot &screenshot, SystemTrash &systemTrash,
                                      const UndoableAction &action)
{
    screenshot.open();
    if (!screenshot.isAt(action.after))
        return noSuchFile();
    const std::error_code error = reverseAction(systemTrash, action);
    if (!error) {
        screenshot.moved(FileUrls::standardized(action.before), Screenshot::Place::Folder);
        screenshot.openAgain();
    }
    return error;
}

ClipboardWriter::Contents ScreenshotMoves::contents(Screenshot &screenshot, CopyBehavior behavior)
{
    screenshot.open();
    const QUrl source = screenshot.url();
    return screenshot.isAt(source) ? ClipboardWriter::read(source, behavior)
                                   : ClipboardWriter::missing(source);
}
