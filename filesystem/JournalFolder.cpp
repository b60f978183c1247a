// SPDX-License-Identifier: MIT
#include "filesystem/JournalFolder.h"

#include "filesystem/Descriptor.h"
#include "filesystem/namesInFolder.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace
{

constexpr char prefix[] = "renames-";
constexpr char suffix[] = ".journal";
constexpr int digits = 6;

/// $XDG_STATE_HOME if it is absolute, or its default.
QByteArray stateHome()
{
    const QByteArray chosen = qgetenv("XDG_STATE_HOME");
    return chosen.startsWith('/') ? chosen : qgetenv("HOME") + "/.local/state";
}

/// The number of the journal with this name; 0 for any other file.
int numberOf(const QByteArray &name)
{
    if (!name.startsWith(prefix) || !name.endsWith(suffix))
        return 0;
    const qsizetype length = name.size() - qsizetype(qstrlen(prefix) + qstrlen(suffix));
    return name.mid(qsizetype(qstrlen(prefix)), length).toInt();
}

std::error_code makeFolders(const QByteArray &path)
{
    if (::mkdir(path.constData(), S_IRWXU) == 0 || errno == EEXIST)
        return {};
    const qsizetype slash = path.lastIndexOf('/');
    if (errno != ENOENT || slash <= 0)
        return lastError();
    if (const std::error_code error = makeFolders(path.left(slash)))
        return error;
    return ::mkdir(path.constData(), S_IRWXU) == 0 || errno == EEXIST ? std::error_code()
                                                                      : lastError();
}

} // namespace

JournalFolder::JournalFolder() : m_path(stateHome() + "/velmora") {}

std::error_code JournalFolder::make() const
{
    return makeFolders(m_path);
}

std::vector<int> JournalFolder::numbers() const
{
    std::vector<int> found;
    for (const QByteArray &name : namesInFolder(m_path).value_or(std::vector<QByteArray>())) {
        if (const int number = numberOf(name); number > 0)
            found.push_back(number);
    }
    std::sort(found.begin(), found.end());
    return found;
}

QByteArray JournalFolder::pathOf(int number) const
{
    return m_path + '/' + prefix + QByteArray::number(number).rightJustified(digits, '0') + suffix;
}

std::error_code JournalFolder::flush() const
{
    const Descriptor folder(::open(m_path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        return lastError();
    // Some file systems cannot do this and return EINVAL.
    return ::fsync(folder.number()) == 0 || errno == EINVAL ? std::error_code() : lastError();
}

void JournalFolder::removeOlderThan(int number) const
{
    for (const int old : numbers()) {
        if (old >= number)
            return;
        const QByteArray path = pathOf(old);
        const Descriptor file(::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
        if (file && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0)
            ::unlink(path.constData());
    }
}
