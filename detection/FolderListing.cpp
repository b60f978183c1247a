#include "detection/FolderListing.h"

#include "filesystem/FileUrls.h"
#include "filesystem/ImageNames.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>

namespace
{

using namespace std::string_view_literals;

constexpr std::array imageExtensions = {"png"sv, "jpg"sv, "jpeg"sv, "heic"sv, "tiff"sv};

/// So many untold entries are looked at in one look, in turn; a folder full of files with several
/// names must not cost more than that while nothing happens.
constexpr int untoldEntriesPerLook = 50;

bool isVisibleImage(const QByteArray &name)
{
    return ImageNames::isVisible({name.constData(), static_cast<size_t>(name.size())},
                                 imageExtensions);
}

bool hasSeveralNames(const struct stat &status)
{
    return !S_ISDIR(status.st_mode) && status.st_nlink > 1;
}

bool isGoneOrForbidden(int error)
{
    return error == ENOENT || error == EACCES;
}

bool isCandidate(FileTime modified, FileTime now)
{
    return modified > now - FolderListing::candidatePeriod;
}

bool haveSameOutcome(const FolderListing::Files &one, const FolderListing::Files &other)
{
    return one.size() == other.size() &&
           std::all_of(one.keyValueBegin(), one.keyValueEnd(), [&other](const auto &entry) {
               const auto match = other.constFind(entry.first);
               return match != other.cend() && match->modified == entry.second.modified;
           });
}

} // namespace

FolderListing::FolderListing(const QUrl &folder)
    : m_folder(QDir::cleanPath(folder.toLocalFile())), m_path(QFile::encodeName(m_folder))
{
}

void FolderListing::setTold(bool told)
{
    m_told = told;
    m_listAgain = true;
}

void FolderListing::entriesChanged(const QStringList &names)
{
    for (const QString &name : names)
        m_changed.insert(QFile::encodeName(name));
}

void FolderListing::listAgain()
{
    m_listAgain = true;
}

bool FolderListing::look(FileTime now)
{
    // A clock that was set back makes candidates of files that had been too old.
    m_listAgain = m_listAgain || !m_told || now < m_now;
    m_now = now;
    m_altered = false;
    if (!m_listAgain)
        lookAtToldEntries();
    if (m_listAgain)
        list();
    return m_altered;
}

void FolderListing::list()
{
    m_listAgain = false;
    m_changed.clear();
    m_untold.clear();
    m_nextAgeing = FileTime::max();
    Files files;
    if (!readEntries(files)) {
        files.clear();
        m_listAgain = true;
    }
    m_altered = m_altered || !haveSameOutcome(files, m_files);
    m_files = std::move(files);
}

bool FolderListing::readEntries(Files &files)
{
    DIR *const folder = ::opendir(m_path.constData());
    if (!folder)
        return false;
    const int descriptor = ::dirfd(folder);
    while (true) {
        errno = 0;
        const dirent *const entry = ::readdir(folder);
        if (!entry)
            break;
        if (!ImageNames::isVisible(entry->d_name, imageExtensions))
            continue;
        struct stat status = {};
        if (::fstatat(descriptor, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            m_listAgain = m_listAgain || !isGoneOrForbidden(errno);
        else if (const std::optional<File> file = judge(entry->d_name, status))
            files.insert(entry->d_name, *file);
    }
    const bool complete = errno == 0;
    ::closedir(folder);
    return complete;
}

void FolderListing::lookAtToldEntries()
{
    gatherUntold();
    const QSet<QByteArray> names = std::exchange(m_changed, {});
    for (const QByteArray &name : names)
        lookAt(name);
}

/// Age alone drops no candidate: its date may have moved on where no one tells, by a mapped file
/// or a descriptor that was opened before the file had its name.
void FolderListing::gatherUntold()
{
    if (m_now >= m_nextAgeing) {
        m_nextAgeing = FileTime::max();
        for (auto [name, file] : m_files.asKeyValueRange()) {
            if (!isCandidate(file.modified, m_now))
                m_changed.insert(name);
            else
                m_nextAgeing = std::min(m_nextAgeing, file.modified + candidatePeriod);
        }
    }
    auto entry = m_untold.upper_bound(m_lastUntold);
    const auto count = std::min(m_untold.size(), static_cast<size_t>(untoldEntriesPerLook));
    for (size_t i = 0; i < count; ++i, ++entry) {
        if (entry == m_untold.end())
            entry = m_untold.begin();
        m_lastUntold = entry->first;
        m_changed.insert(m_lastUntold);
    }
}

void FolderListing::lookAt(const QByteArray &name)
{
    struct stat status = {};
    const QByteArray path = m_path + '/' + name;
    if (::lstat(path.constData(), &status) != 0) {
        m_listAgain = m_listAgain || !isGoneOrForbidden(errno);
        m_untold.erase(name);
        forget(name);
        return;
    }
    // A new name for an old file: what is written through it is told by this name only.
    const auto untold = m_untold.find(name);
    if (hasSeveralNames(status) && (untold == m_untold.end() || untold->second != status.st_ino))
        m_listAgain = true;
    if (!isVisibleImage(name))
        return;
    if (const std::optional<File> file = judge(name, status))
        keep(name, *file);
    else
        forget(name);
}

/// The file that the entry is, if it is a candidate.
std::optional<FolderListing::File> FolderListing::judge(const QByteArray &name,
                                                        const struct stat &status)
{
    if (S_ISDIR(status.st_mode) || hasSeveralNames(status))
        m_untold[name] = status.st_ino;
    const FileTime modified = FileTimes::modified(status);
    if (!isCandidate(modified, m_now))
        return std::nullopt;
    const QUrl url = urlOf(name);
    if (url.isEmpty())
        return std::nullopt;
    m_nextAgeing = std::min(m_nextAgeing, modified + candidatePeriod);
    return File{url, modified, FileTimes::changed(status)};
}

void FolderListing::keep(const QByteArray &name, const File &file)
{
    const auto before = m_files.constFind(name);
    m_altered = m_altered || before == m_files.cend() || before->modified != file.modified;
    m_files.insert(name, file);
}

void FolderListing::forget(const QByteArray &name)
{
    m_altered = m_files.remove(name) || m_altered;
}

/// Empty where the name can't be said in a URL.
QUrl FolderListing::urlOf(const QByteArray &name) const
{
    if (const auto known = m_files.constFind(name); known != m_files.cend())
        return known->url;
    const std::optional<QString> decoded = ImageNames::decoded(name);
    return decoded ? FileUrls::fromPath(m_folder + u'/' + *decoded) : QUrl();
}
