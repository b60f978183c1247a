// SPDX-License-Identifier: MIT
#include "platform/SystemTrash.h"

#include "filesystem/moveFile.h"
#include "platform/linux/trash/TrashFolder.h"
#include "platform/linux/trash/TrashInfo.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int maximumAttempts = 1000;
constexpr long usualMaximumName = 255;

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// The file to be trashed.
struct Original {
    QUrl url;
    QByteArray path;
    QByteArray name;
    /// Its folder: an absolute path without links.
    QByteArray folder;

    /// Its path as the trash's info file records it.
    QByteArray pathIn(const TrashFolder &trash) const
    {
        if (trash.top.isEmpty())
            return path;
        const qsizetype afterTop = trash.top == "/" ? 1 : trash.top.size() + 1;
        const QByteArray whole = QByteArray(folder == "/" ? QByteArray() : folder) + '/' + name;
        return whole.mid(afterTop);
    }
};

SystemTrash::Trashed failure(const std::error_code &error)
{
    return {error, std::nullopt};
}

/// The file system's limit on the length of names. Encrypted ones have a lower one than usual.
long maximumNameIn(const TrashFolder &trash)
{
    const auto limit = [](const QByteArray &folder) {
        const long answer = ::pathconf(folder.constData(), _PC_NAME_MAX);
        return answer > 0 ? answer : usualMaximumName;
    };
    return std::min(limit(trash.filesFolder()), limit(trash.infoFolder()));
}

/// The info file is written first: it reserves the name, and without it no file manager could
/// restore the file.
SystemTrash::Trashed moveInto(const TrashFolder &trash, const Original &original)
{
    const QByteArray info =
        TrashInfo::content(original.pathIn(trash), QDateTime::currentDateTime());
    const long maximumName = maximumNameIn(trash);
    for (int attempt = 1; attempt <= maximumAttempts; ++attempt) {
        const QByteArray file =
            trash.filesFolder() + '/' + TrashInfo::nameInTrash(original.name, attempt, maximumName);
        const QByteArray infoPath = TrashInfo::pathFor(file);
        std::error_code error = TrashInfo::write(infoPath, info);
        if (error == std::errc::file_exists)
            continue;
        if (error)
            return failure(error);
        const QUrl location = QUrl::fromLocalFile(QFile::decodeName(file));
        error = moveFile(original.url, location);
        if (!error)
            return {{}, location};
        ::unlink(infoPath.constData());
        if (error != std::errc::file_exists)
            return failure(error);
    }
    return failure(std::make_error_code(std::errc::file_exists));
}

class FreedesktopTrash : public SystemTrash
{
public:
    Trashed trash(const QUrl &file) override
    {
        Original original;
        if (const std::error_code error = examine(file, &original))
            return failure(error);
        const TrashFolder home = TrashFolder::home();
        if (!areOnOneFileSystem(original.folder, home.path)) {
            const auto near = TrashFolder::onFileSystemOf(original.folder);
            const Trashed trashed =
                near ? moveInto(*near, original)
                     : failure(std::make_error_code(std::errc::permission_denied));
            // A file on a file system without a trash of its own is copied to the home trash.
            if (!trashed.error)
                return trashed;
        }
        const std::error_code error = home.prepare();
        return error ? failure(error) : moveInto(home, original);
    }

    std::error_code restore(const QUrl &trashed, const QUrl &original) override
    {
        const std::error_code error = moveFile(trashed, original);
        const QByteArray info = TrashInfo::pathFor(QFile::encodeName(trashed.toLocalFile()));
        if (!error && !info.isEmpty())
            ::unlink(info.constData());
        return error;
    }

private:
    static std::error_code examine(const QUrl &file, Original *original)
    {
        original->url = file;
        original->path = QFile::encodeName(file.toLocalFile());
        const qsizetype name = original->path.lastIndexOf('/') + 1;
        original->name = original->path.mid(name);
        if (!original->path.startsWith('/') || original->name.isEmpty())
            return std::make_error_code(std::errc::invalid_argument);
        struct stat status = {};
        if (::lstat(original->path.constData(), &status) != 0)
            return lastError();
        char folder[PATH_MAX];
        if (::realpath(original->path.left(name).constData(), folder) == nullptr)
            return lastError();
        original->folder = folder;
        return {};
    }
};

} // namespace

std::unique_ptr<SystemTrash> makeSystemTrash()
{
    return std::make_unique<FreedesktopTrash>();
}
