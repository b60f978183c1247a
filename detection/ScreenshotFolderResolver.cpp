// SPDX-License-Identifier: MIT
#include "detection/ScreenshotFolderResolver.h"

#include "core/VelmoraLog.h"
#include "detection/ScreenshotSpeedOptimizer.h"
#include "filesystem/FileUrls.h"
#include "filesystem/ImageNames.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>

using namespace Qt::StringLiterals;

namespace
{

using namespace std::string_view_literals;

/// One extension more than the watcher accepts.
constexpr std::array imageExtensions = {"png"sv, "jpg"sv, "jpeg"sv, "heic"sv, "tiff"sv, "tif"sv};

constexpr size_t longestUserEntry = 16384;

struct DatedFile {
    QString name;
    FileTime modified;
};

QString homeOfUser(const QString &name)
{
    if (name.isEmpty())
        return QDir::homePath();
    passwd entry = {};
    passwd *found = nullptr;
    std::vector<char> texts(longestUserEntry);
    ::getpwnam_r(name.toUtf8().constData(), &entry, texts.data(), texts.size(), &found);
    return found ? QFile::decodeName(found->pw_dir) : QString();
}

/// The path with a leading "~" or "~user" expanded; unchanged if there is no such user.
QString expandTilde(const QString &path)
{
    if (!path.startsWith(u'~'))
        return path;
    const qsizetype end =
        std::min(path.size(), path.indexOf(u'/') < 0 ? path.size() : path.indexOf(u'/'));
    const QString home = homeOfUser(path.mid(1, end - 1));
    return home.isEmpty() ? path : QString(home + path.mid(end));
}

QUrl folderAt(const QString &path)
{
    return FileUrls::fromPath(QDir::current().absoluteFilePath(path));
}

FileTime modificationDateAt(int folder, const char *path)
{
    struct stat status = {};
    if (::fstatat(folder, path, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return FileTimes::distantPast;
    return FileTimes::modified(status);
}

/// The folder's next entry; null at its end, and, with errno set, if it cannot be read.
const dirent *nextEntry(DIR *folder)
{
    errno = 0;
    return ::readdir(folder);
}

/// Nothing if the folder cannot be read completely.
std::optional<std::vector<DatedFile>> imagesIn(const QString &path)
{
    DIR *const folder = ::opendir(QFile::encodeName(path).constData());
    if (!folder)
        return std::nullopt;
    std::vector<DatedFile> images;
    while (const dirent *const entry = nextEntry(folder)) {
        if (!ImageNames::isVisible(entry->d_name, imageExtensions))
            continue;
        if (const std::optional<QString> name = ImageNames::decoded(entry->d_name))
            images.push_back({*name, modificationDateAt(::dirfd(folder), entry->d_name)});
    }
    const bool isWhole = errno == 0;
    ::closedir(folder);
    return isWhole ? std::optional(images) : std::nullopt;
}

} // namespace

namespace ScreenshotFolderResolver
{

QUrl currentScreenshotFolder(const ScreenshotPreferences &preferences)
{
    if (const QString location = preferences.location().value_or(QString()); !location.isEmpty())
        return folderAt(expandTilde(location));
    if (const QString folder = preferences.desktopToolFolder().value_or(QString());
        !folder.isEmpty())
        return folderAt(folder);
    return defaultFolder();
}

QUrl defaultFolder()
{
    return folderAt(QDir::homePath() + u"/Desktop"_s);
}

void setScreenshotFolder(ScreenshotPreferences &preferences, const QUrl &folder)
{
    const QString path = FileUrls::standardized(folder).toLocalFile();
    if (path.isEmpty())
        return;
    VelmoraLog::write(u"set screenshot folder "_s + path);
    const QList<SystemCommand> commands = preferences.storeLocation(path);
    for (const SystemCommand &command : commands)
        ScreenshotSpeedOptimizer::run(command.executable, command.arguments);
}

QList<QUrl> recentScreenshotFiles(const QUrl &folder, int limit)
{
    return readableScreenshotFiles(folder, limit).value_or(QList<QUrl>());
}

std::optional<QList<QUrl>> readableScreenshotFiles(const QUrl &folder, int limit)
{
    const QString path = folder.toLocalFile();
    std::optional<std::vector<DatedFile>> found = imagesIn(path);
    if (!found)
        return std::nullopt;
    std::vector<DatedFile> &images = *found;
    std::stable_sort(
        images.begin(), images.end(),
        [](const DatedFile &one, const DatedFile &other) { return one.modified > other.modified; });
    QList<QUrl> files;
    const auto count = std::min(images.size(), static_cast<size_t>(std::max(limit, 0)));
    for (size_t i = 0; i < count; ++i)
        files.append(FileUrls::fromPath(path + u'/' + images[i].name));
    return files;
}

FileTime modificationDate(const QUrl &url)
{
    return modificationDateAt(AT_FDCWD, QFile::encodeName(url.toLocalFile()).constData());
}

} // namespace ScreenshotFolderResolver
