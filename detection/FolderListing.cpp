// SPDX-License-Identifier: MIT
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

/// At most this many unreported entries are checked per look, in turn, so that a folder full of
/// files with several names costs no more than this while nothing happens.
constexpr int unreportedEntriesPerLook = 50;

/// A pause of 100 times the listing's duration, so that regular listing takes 1 % of the time.
constexpr int pausePerListing = 100;

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

FolderListing::FolderState::FolderState(const struct stat &status)
    : device(status.st_dev), inode(status.st_ino), modified(FileTimes::modified(status))
{
}

FolderListing::FolderListing(const QUrl &folder)
    : m_folder(QDir::cleanPath(folder.toLocalFile())), m_path(QFile::encodeName(m_folder))
{
}

void FolderListing::setReported(bool reported)
{
    m_listAgain = m_listAgain || reported || m_isReported;
    m_isReported = reported;
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
    // If the clock was set back, files that were too old may be candidates again.
    m_listAgain = m_listAgain || now < m_now;
    m_now = now;
    m_altered = false;
    if (!m_listAgain && !m_isReported)
        m_listAgain = Clock::now() >= m_nextListing || hasFolderMoved();
    if (!m_listAgain)
        lookAtChangedEntries();
    if (m_listAgain)
        list();
    return m_altered;
}

bool FolderListing::hasFolderMoved() const
{
    struct stat status = {};
    return ::stat(m_path.constData(), &status) != 0 || FolderState(status) != m_folderState;
}

void FolderListing::list()
{
    const Clock::time_point start = Clock::now();
    m_listAgain = false;
    m_changed.clear();
    m_unreported.clear();
    m_nextAgeing = FileTime::max();
    Files files;
    if (!readEntries(files)) {
        files.clear();
        m_listAgain = true;
    }
    m_altered = m_altered || !haveSameOutcome(files, m_files);
    m_files = std::move(files);
    const Clock::time_point end = Clock::now();
    m_nextListing = end + std::min<Clock::duration>((end - start) * pausePerListing, longestPause);
}

bool FolderListing::readEntries(Files &files)
{
    DIR *const folder = ::opendir(m_path.constData());
    if (!folder)
        return false;
    const int descriptor = ::dirfd(folder);
    struct stat folderStatus = {};
    if (::fstat(descriptor, &folderStatus) == 0)
        m_folderState = FolderState(folderStatus);
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

void FolderListing::lookAtChangedEntries()
{
    gatherAged();
    if (m_isReported)
        gatherUnreported();
    const QSet<QByteArray> names = std::exchange(m_changed, {});
    for (const QByteArray &name : names)
        lookAt(name);
}

/// Candidates whose time is up are checked again before they are dropped. Their date may have
/// changed unreported, through a mapping or a descriptor that was opened before the file had its
/// name.
void FolderListing::gatherAged()
{
    if (m_now < m_nextAgeing)
        return;
    m_nextAgeing = FileTime::max();
    for (auto [name, file] : m_files.asKeyValueRange()) {
        if (!isCandidate(file.modified, m_now))
            m_changed.insert(name);
        else
            m_nextAgeing = std::min(m_nextAgeing, file.modified + candidatePeriod);
    }
}

void FolderListing::gatherUnreported()
{
    auto entry = m_unreported.upper_bound(m_lastUnreported);
    const auto count = std::min(m_unreported.size(), static_cast<size_t>(unreportedEntriesPerLook));
    for (size_t i = 0; i < count; ++i, ++entry) {
        if (entry == m_unreported.end())
            entry = m_unreported.begin();
        m_lastUnreported = entry->first;
        m_changed.insert(m_lastUnreported);
    }
}

void FolderListing::lookAt(const QByteArray &name)
{
    struct stat status = {};
    const QByteArray path = m_path + '/' + name;
    if (::lstat(path.constData(), &status) != 0) {
        m_listAgain = m_listAgain || !isGoneOrForbidden(errno);
        m_unreported.erase(name);
        forget(name);
        return;
    }
    // A new name for an old file: from now on, writes through this name are reported under it
    // alone.
    const auto unreported = m_unreported.find(name);
    if (hasSeveralNames(status) &&
        (unreported == m_unreported.end() || unreported->second != status.st_ino))
        m_listAgain = true;
    if (!isVisibleImage(name))
        return;
    if (const std::optional<File> file = judge(name, status))
        keep(name, *file);
    else
        forget(name);
}

/// The entry as a file, if it is a candidate.
std::optional<FolderListing::File> FolderListing::judge(const QByteArray &name,
                                                        const struct stat &status)
{
    if (S_ISDIR(status.st_mode) || hasSeveralNames(status))
        m_unreported[name] = status.st_ino;
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

/// Empty if the name cannot be expressed in a URL.
QUrl FolderListing::urlOf(const QByteArray &name) const
{
    if (const auto known = m_files.constFind(name); known != m_files.cend())
        return known->url;
    const std::optional<QString> decoded = ImageNames::decoded(name);
    return decoded ? FileUrls::fromPath(m_folder + u'/' + *decoded) : QUrl();
}
