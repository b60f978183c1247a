// SPDX-License-Identifier: MIT
#include "command/Namer.h"

#include "command/filePaths.h"
#include "filesystem/FileUrls.h"
#include "filesystem/RenameJournal.h"
#include "filesystem/moveWithinFileSystem.h"
#include "naming/NameFile.h"

#include <QUrl>

#include <utility>

Namer::Namer(QString appName) : m_appName(std::move(appName)) {}

Naming Namer::name(const PictureReading &reading)
{
    const QByteArray wanted = FilePaths::folderOf(reading.path) + wantedName(reading);
    if (wanted == reading.path)
        return {wanted, {}};
    // The names before the next counter are taken, one of them by this picture itself.
    if (m_counters.contains(wanted) && FilePaths::withoutNumber(reading.path) == wanted)
        return {reading.path, {}};
    for (int counter = m_counters.value(wanted, 1);; ++counter) {
        const QByteArray candidate = FilePaths::numbered(wanted, counter);
        if (candidate == reading.path)
            return {candidate, {}};
        const std::error_code error = take(reading, candidate);
        if (!error) {
            m_counters.insert(wanted, counter);
            forget(reading.path);
            return {candidate, {}};
        }
        if (error != std::errc::file_exists)
            return {reading.path, QByteArray::fromStdString(error.message())};
    }
}

/// The path is free now. If it had a counter, a picture that wants the path without one may now
/// take it.
void Namer::forget(const QByteArray &path)
{
    m_counters.remove(path);
    m_counters.remove(FilePaths::withoutNumber(path));
}

QByteArray Namer::wantedName(const PictureReading &reading) const
{
    // Its old name at least says when it was taken.
    if (reading.words.isEmpty())
        return FilePaths::nameOf(reading.path);
    const QUrl file = FileUrls::fromPath(u'/' + FilePaths::nameText(reading.path));
    return NameFile::nameFromWords(reading.words, m_appName, file).toUtf8();
}

std::error_code Preview::take(const PictureReading &reading, const QByteArray &newPath)
{
    const bool isTaken =
        m_taken.contains(newPath) || (FilePaths::isTaken(newPath) && !m_left.contains(newPath));
    if (isTaken)
        return std::make_error_code(std::errc::file_exists);
    m_taken.insert(newPath);
    m_left.remove(newPath);
    m_taken.remove(reading.path);
    m_left.insert(reading.path);
    return {};
}

Renamer::Renamer(const QString &appName, RenameJournal &journal)
    : Namer(appName), m_journal(journal)
{
}

std::error_code Renamer::take(const PictureReading &reading, const QByteArray &newPath)
{
    if (FilePaths::isTaken(newPath))
        return std::make_error_code(std::errc::file_exists);
    // Another file may have replaced the picture since it was read.
    const std::optional<FileIdentity> identity = identityOf(reading.path);
    if (!identity || !identity->sameContent(reading.identity))
        return std::make_error_code(std::errc::no_such_file_or_directory);
    const std::error_code error = m_journal.append(
        {*identity, FilePaths::absolute(reading.path), FilePaths::absolute(newPath)});
    if (error) {
        m_hasLostJournal = true;
        return error;
    }
    return moveWithinFileSystem(reading.path.constData(), newPath.constData());
}
