// SPDX-License-Identifier: MIT
#pragma once

#include "command/PictureReader.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>

#include <memory>
#include <system_error>

class RenameJournal;

/// The result of naming one picture.
struct Naming {
    QByteArray newPath; ///< the old path if the name stays
    QByteArray failure; ///< why it could not be named; empty on success
};

/// Names pictures by the words in them. Each name is unique in its folder. Not thread-safe.
class Namer
{
public:
    explicit Namer(QString appName);
    virtual ~Namer() = default;

    /// A picture without words keeps its name.
    Naming name(const PictureReading &reading);

protected:
    /// Gives the file this name. After `std::errc::file_exists`, the next candidate is tried.
    virtual std::error_code take(const PictureReading &reading, const QByteArray &newPath) = 0;

private:
    QByteArray wantedName(const PictureReading &reading) const;
    void forget(const QByteArray &path);

    const QString m_appName;
    /// The last counter used for each wanted path; all lower ones are taken.
    QHash<QByteArray, int> m_counters;
};

/// Only determines the names, without changing any file.
class Preview : public Namer
{
public:
    using Namer::Namer;

protected:
    std::error_code take(const PictureReading &reading, const QByteArray &newPath) override;

private:
    QSet<QByteArray> m_taken;
    QSet<QByteArray> m_left;
};

/// Renames the files. Each rename is written to the journal first.
class Renamer : public Namer
{
public:
    /// @param journal must outlive this object
    Renamer(const QString &appName, RenameJournal &journal);

    /// The journal can no longer be written, so nothing more is renamed.
    bool hasLostJournal() const { return m_hasLostJournal; }

protected:
    std::error_code take(const PictureReading &reading, const QByteArray &newPath) override;

private:
    RenameJournal &m_journal;
    bool m_hasLostJournal = false;
};
