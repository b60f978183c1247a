// SPDX-License-Identifier: MIT
#include "filesystem/RenameJournal.h"

#include "filesystem/JournalFolder.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <utility>

namespace
{

constexpr mode_t ownersFile = S_IRUSR | S_IWUSR;
constexpr qint64 largestJournal = 1'000'000'000; // bytes

/// One line of numbers and percent-encoded paths, which contain neither tabs nor line breaks.
QByteArray lineOf(const RenameJournal::Entry &entry)
{
    const FileIdentity &identity = entry.identity;
    const QByteArrayList fields{
        QByteArray::number(identity.device),   QByteArray::number(identity.serial),
        QByteArray::number(identity.made),     QByteArray::number(identity.size),
        QByteArray::number(identity.modified), entry.oldPath.toPercentEncoding("/"),
        entry.newPath.toPercentEncoding("/"),
    };
    return fields.join('\t') + '\n';
}

std::optional<RenameJournal::Entry> entryOf(const QByteArray &line)
{
    const QList<QByteArray> fields = line.split('\t');
    if (fields.size() != 7)
        return std::nullopt;
    RenameJournal::Entry entry;
    entry.identity.device = fields[0].toULongLong();
    entry.identity.serial = fields[1].toULongLong();
    entry.identity.made = fields[2].toLongLong();
    entry.identity.size = fields[3].toLongLong();
    entry.identity.modified = fields[4].toLongLong();
    entry.oldPath = QByteArray::fromPercentEncoding(fields[5]);
    entry.newPath = QByteArray::fromPercentEncoding(fields[6]);
    return entry;
}

/// Held until the descriptor is closed, however the process ends.
bool lock(const Descriptor &file)
{
    return ::flock(file.number(), LOCK_EX | LOCK_NB) == 0;
}

/// Whether the file still has its name: another process may have removed it before it was locked.
bool hasName(const Descriptor &file)
{
    struct stat status = {};
    return ::fstat(file.number(), &status) == 0 && status.st_nlink > 0;
}

std::vector<RenameJournal::Entry> entriesIn(const Descriptor &file)
{
    std::vector<RenameJournal::Entry> found;
    const QByteArray content = readWhole(file.number(), largestJournal).value_or(QByteArray());
    // A line without a line break at its end was never completed.
    const QByteArray whole = content.left(content.lastIndexOf('\n') + 1);
    for (const QByteArray &line : whole.split('\n')) {
        if (std::optional<RenameJournal::Entry> entry = entryOf(line))
            found.push_back(std::move(*entry));
    }
    return found;
}

enum class Found { No, Yes, JournalIsOlder };

Found isIn(const QByteArray &path, const FileIdentity &file)
{
    const auto identity = fileIdentity(QFile::decodeName(path));
    if (identity && identity->modified < file.modified)
        return Found::JournalIsOlder;
    const Descriptor journal(
        ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!journal)
        return Found::No;
    const auto entries = entriesIn(journal);
    const bool isThere = std::any_of(entries.cbegin(), entries.cend(), [&file](const auto &entry) {
        return entry.identity.sameContent(file);
    });
    return isThere ? Found::Yes : Found::No;
}

bool writeAll(int descriptor, const QByteArray &bytes, qint64 at)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::pwrite(descriptor, bytes.constData() + written,
                                       size_t(bytes.size() - written), at + written);
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            written += count;
    }
    return ::fsync(descriptor) == 0;
}

} // namespace

std::unique_ptr<RenameJournal> RenameJournal::begin(std::error_code &error)
{
    const JournalFolder folder;
    if ((error = folder.make()))
        return nullptr;
    const std::vector<int> numbers = folder.numbers();
    for (int number = numbers.empty() ? 1 : numbers.back() + 1;; ++number) {
        const QByteArray path = folder.pathOf(number);
        Descriptor file(
            ::open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, ownersFile));
        if (file && lock(file) && hasName(file)) {
            error = folder.flush();
            std::unique_ptr<RenameJournal> journal(new RenameJournal(path, std::move(file), 0));
            if (error)
                return nullptr;
            folder.removeOlderThan(number - runsKept + 1);
            return journal;
        }
        if (!file && errno != EEXIST) {
            error = lastError();
            return nullptr;
        }
    }
}

std::unique_ptr<RenameJournal> RenameJournal::openLast(std::error_code &error)
{
    const JournalFolder folder;
    std::vector<int> numbers = folder.numbers();
    for (; !numbers.empty(); numbers.pop_back()) {
        const QByteArray path = folder.pathOf(numbers.back());
        Descriptor file(::open(path.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        if (!file && errno == ENOENT)
            continue;
        if (!file || !lock(file)) {
            error = lastError();
            return nullptr;
        }
        const auto identity = fileIdentity(file.number());
        // A journal that its run never wrote to is removed by its destructor.
        std::unique_ptr<RenameJournal> journal(
            new RenameJournal(path, std::move(file), identity ? identity->size : 1));
        if (!journal->entries().empty())
            return journal;
    }
    error = {};
    return nullptr;
}

RenameJournal::RenameJournal(QByteArray path, Descriptor file, qint64 size)
    : m_path(std::move(path)), m_file(std::move(file)), m_size(size)
{
}

RenameJournal::~RenameJournal()
{
    if (m_size == 0)
        end();
}

std::error_code RenameJournal::append(const Entry &entry)
{
    const QByteArray line = lineOf(entry);
    if (!writeAll(m_file.number(), line, m_size)) {
        const std::error_code error = lastError();
        // An incomplete line would corrupt the next one.
        [[maybe_unused]] const int truncated = ::ftruncate(m_file.number(), m_size);
        return error;
    }
    m_size += line.size();
    return {};
}

std::vector<RenameJournal::Entry> RenameJournal::entries() const
{
    return entriesIn(m_file);
}

void RenameJournal::end()
{
    if (m_file && hasName(m_file)) {
        if (m_size == 0 ||
            ::rename(m_path.constData(), JournalFolder().pathOfUndone().constData()) != 0)
            ::unlink(m_path.constData());
    }
    m_file.close();
}

bool RenameJournal::hasRenamed(const FileIdentity &file)
{
    const JournalFolder folder;
    if (isIn(folder.pathOfUndone(), file) == Found::Yes)
        return true;
    std::vector<int> numbers = folder.numbers();
    // A new file ends this at once, because no run has written since it was made.
    for (; !numbers.empty(); numbers.pop_back()) {
        const Found found = isIn(folder.pathOf(numbers.back()), file);
        if (found != Found::No)
            return found == Found::Yes;
    }
    return false;
}
