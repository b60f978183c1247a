// SPDX-License-Identifier: MIT
#include "files/ScreenshotTrash.h"

#include "core/VelmoraLog.h"
#include "files/moveToFreeName.h"
#include "filesystem/FileUrls.h"
#include "platform/SystemTrash.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace
{

ScreenshotTrash::Result moveToHomeTrash(const QUrl &source)
{
    const QString folder = QDir::home().filePath(u".Trash"_s);
    QDir().mkpath(folder);
    const MovedFile moved = moveToFreeName(
        source, FileUrls::child(FileUrls::fromPath(folder), FileUrls::lastPathComponent(source)));
    if (moved.error)
        return {moved.error, std::nullopt};
    VelmoraLog::write(u"fallback trash moved "_s + source.toLocalFile() + u" to "_s +
                      moved.location.toLocalFile());
    return {{}, moved.location};
}

} // namespace

ScreenshotTrash::Result ScreenshotTrash::move(SystemTrash &trash, const QUrl &url)
{
    const QUrl source = FileUrls::standardized(url);
    if (!FileUrls::exists(source))
        return {std::make_error_code(std::errc::no_such_file_or_directory), std::nullopt};
    const SystemTrash::Trashed trashed = trash.trash(source);
    if (!trashed.error && trashed.location)
        return {{}, FileUrls::standardized(*trashed.location)};
    if (trashed.error)
        VelmoraLog::write(u"system trash failed "_s + source.toLocalFile() + u": "_s +
                          QString::fromLocal8Bit(trashed.error.message().c_str()));
    return moveToHomeTrash(source);
}
