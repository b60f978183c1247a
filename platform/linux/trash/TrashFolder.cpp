// SPDX-License-Identifier: MIT
#include "platform/linux/trash/TrashFolder.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr mode_t ownerOnly = S_IRWXU;

QByteArray parentOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash > 0 ? path.left(slash) : QByteArrayLiteral("/");
}

QByteArray childOf(const QByteArray &folder, const QByteArray &name)
{
    return QByteArray(folder == "/" ? QByteArray() : folder) + '/' + name;
}

std::error_code makeFolders(const QByteArray &path)
{
    if (::mkdir(path.constData(), ownerOnly) == 0)
        return {};
    if (errno == ENOENT && path != "/") {
        const std::error_code error = makeFolders(parentOf(path));
        if (error || ::mkdir(path.constData(), ownerOnly) == 0)
            return error;
    }
    const std::error_code error(errno, std::generic_category());
    struct stat status = {};
    const bool isThere = error == std::errc::file_exists &&
                         ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
    if (isThere)
        return {};
    return error == std::errc::file_exists ? std::make_error_code(std::errc::not_a_directory)
                                           : error;
}

std::optional<dev_t> deviceOf(const QByteArray &folder)
{
    struct stat status = {};
    if (::stat(folder.constData(), &status) == 0)
        return status.st_dev;
    return errno == ENOENT && folder != "/" ? deviceOf(parentOf(folder)) : std::nullopt;
}

QByteArray topOfFileSystem(QByteArray folder)
{
    const std::optional<dev_t> device = deviceOf(folder);
    while (folder != "/" && deviceOf(parentOf(folder)) == device)
        folder = parentOf(folder);
    return folder;
}

/// A link could lead anywhere; without the sticky bit other users could remove the files.
bool isSafeCommonTrash(const QByteArray &path)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           (status.st_mode & S_ISVTX) != 0;
}

bool isOwnFolder(const QByteArray &path)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::getuid();
}

bool makeOwnFolder(const QByteArray &path)
{
    return ::mkdir(path.constData(), ownerOnly) == 0 || (errno == EEXIST && isOwnFolder(path));
}

} // namespace

std::error_code TrashFolder::prepare() const
{
    const std::error_code error = makeFolders(filesFolder());
    return error ? error : makeFolders(infoFolder());
}

TrashFolder TrashFolder::home()
{
    QByteArray data = qgetenv("XDG_DATA_HOME");
    if (!data.startsWith('/'))
        data = QFile::encodeName(QDir::homePath()) + "/.local/share";
    return {childOf(data, "Trash"), {}};
}

std::optional<TrashFolder> TrashFolder::onFileSystemOf(const QByteArray &folder)
{
    const QByteArray top = topOfFileSystem(folder);
    const QByteArray user = QByteArray::number(::getuid());
    const QByteArray common = childOf(top, ".Trash");
    const TrashFolder shared = {childOf(common, user), top};
    if (isSafeCommonTrash(common) && makeOwnFolder(shared.path) && !shared.prepare())
        return shared;
    const TrashFolder own = {childOf(top, ".Trash-" + user), top};
    if (makeOwnFolder(own.path) && !own.prepare())
        return own;
    return std::nullopt;
}

bool areOnOneFileSystem(const QByteArray &folder, const QByteArray &other)
{
    const std::optional<dev_t> device = deviceOf(folder);
    return device && device == deviceOf(other);
}
