// SPDX-License-Identifier: MIT
#include "platform/linux/desktop-records/RecentDocuments.h"

#include "platform/linux/desktop-records/fileUri.h"

#include <QFile>
#include <QSaveFile>
#include <QSet>
#include <QStandardPaths>
#include <QUrl>

#include <cctype>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

/// Far larger than such lists become.
constexpr qint64 largestList = 16 << 20; // bytes

/// Another program may write the list at the same moment.
constexpr int mostAttempts = 5;

/// An entry of the list, by the positions of its parts in the text.
struct Entry {
    qsizetype begin;
    qsizetype end;
    qsizetype uriBegin;
    qsizetype uriEnd;
    QString path; ///< empty when it is not a file of this machine
};

QByteArray withoutEntities(QByteArray text)
{
    return text.replace("&lt;", "<")
        .replace("&gt;", ">")
        .replace("&quot;", "\"")
        .replace("&apos;", "'")
        .replace("&#39;", "'")
        .replace("&#x27;", "'")
        .replace("&amp;", "&");
}

QByteArray withEntities(QByteArray text)
{
    return text.replace("&", "&amp;")
        .replace("<", "&lt;")
        .replace(">", "&gt;")
        .replace("\"", "&quot;")
        .replace("'", "&apos;");
}

/// The value of an attribute of the tag between `begin` and `end`; absent when there is none.
std::optional<std::pair<qsizetype, qsizetype>> attribute(const QByteArray &text, qsizetype begin,
                                                         qsizetype end, const QByteArray &name)
{
    for (qsizetype at = begin; (at = text.indexOf(name, at)) >= 0 && at < end; at += name.size()) {
        const qsizetype quote = at + name.size() + 1;
        if (!std::isspace(static_cast<unsigned char>(text[at - 1])) || quote >= end ||
            text[quote - 1] != '=' || (text[quote] != '"' && text[quote] != '\''))
            continue;
        const qsizetype last = text.indexOf(text[quote], quote + 1);
        if (last < 0 || last > end)
            return std::nullopt;
        return std::pair(quote + 1, last);
    }
    return std::nullopt;
}

std::vector<Entry> entriesOf(const QByteArray &text)
{
    std::vector<Entry> entries;
    const QByteArray opening = "<bookmark ";
    const QByteArray closing = "</bookmark>";
    for (qsizetype at = 0; (at = text.indexOf(opening, at)) >= 0;) {
        const qsizetype tagEnd = text.indexOf('>', at);
        if (tagEnd < 0)
            break;
        const bool isEmpty = text[tagEnd - 1] == '/';
        const qsizetype last = isEmpty ? tagEnd + 1 : text.indexOf(closing, tagEnd);
        if (last < 0)
            break;
        if (const auto uri = attribute(text, at, tagEnd, "href")) {
            const QUrl url =
                QUrl::fromEncoded(withoutEntities(text.mid(uri->first, uri->second - uri->first)));
            entries.push_back({at, isEmpty ? last : last + closing.size(), uri->first, uri->second,
                               url.isLocalFile() ? url.toLocalFile() : QString()});
        }
        at = last;
    }
    return entries;
}

/// With its line, when it has one of its own.
void removeEntry(QByteArray &text, const Entry &entry)
{
    qsizetype begin = entry.begin;
    while (begin > 0 && (text[begin - 1] == ' ' || text[begin - 1] == '\t'))
        --begin;
    qsizetype end = entry.end;
    if (end < text.size() && text[end] == '\n')
        ++end;
    text.remove(begin, end - begin);
}

/// Identifies a file and its content.
struct Version {
    dev_t device = 0;
    ino_t serial = 0;
    off_t size = 0;
    timespec modified = {};

    bool operator==(const Version &other) const
    {
        return device == other.device && serial == other.serial && size == other.size &&
               modified.tv_sec == other.modified.tv_sec &&
               modified.tv_nsec == other.modified.tv_nsec;
    }
};

std::optional<Version> versionOf(const struct stat &status)
{
    if (!S_ISREG(status.st_mode) || status.st_size > largestList)
        return std::nullopt;
    return Version{status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

std::optional<Version> versionAt(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? versionOf(status)
                                                                     : std::nullopt;
}

/// Does not wait for a pipe in its place.
std::optional<std::pair<Version, QByteArray>> read(const QString &path)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    QFile file;
    struct stat status = {};
    if (descriptor < 0 || !file.open(descriptor, QFile::ReadOnly, QFile::AutoCloseHandle) ||
        ::fstat(descriptor, &status) != 0)
        return std::nullopt;
    const std::optional<Version> version = versionOf(status);
    if (!version)
        return std::nullopt;
    const QByteArray content = file.read(largestList);
    return content.size() == status.st_size ? std::optional(std::pair(*version, content))
                                            : std::nullopt;
}

RecentDocuments::Moves withoutTaken(RecentDocuments::Moves moves)
{
    moves.removeIf([](const auto &move) {
        struct stat status = {};
        return ::lstat(QFile::encodeName(move.key()).constData(), &status) == 0;
    });
    return moves;
}

} // namespace

namespace RecentDocuments
{

QByteArray moved(const QByteArray &list, const Moves &moves)
{
    const std::vector<Entry> entries = entriesOf(list);
    QSet<QString> taken;
    for (const Entry &entry : entries)
        taken.insert(entry.path);
    QByteArray text = list;
    // From the end, so that earlier positions stay valid.
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        const auto move = moves.constFind(entry->path);
        if (entry->path.isEmpty() || move == moves.cend())
            continue;
        if (taken.contains(*move)) {
            removeEntry(text, *entry);
        } else {
            text.replace(entry->uriBegin, entry->uriEnd - entry->uriBegin,
                         withEntities(fileUri(*move)));
            taken.insert(*move);
        }
    }
    return text;
}

void move(const Moves &asked)
{
    const Moves moves = withoutTaken(asked);
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         u"/recently-used.xbel"_s;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const auto list = read(path);
        if (!list)
            return;
        const QByteArray text = moved(list->second, moves);
        if (text == list->second)
            return;
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            return;
        if (versionAt(path) == list->first) {
            file.commit();
            return;
        }
    }
}

} // namespace RecentDocuments
