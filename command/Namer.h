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

/// What became of one picture's name.
struct Naming {
    QByteArray newPath; ///< the old one where the name stays
    QByteArray failure; ///< why it could not be named; empty when it could
};

/// Gives pictures the names that their words make, each free in its folder. One thread.
class Namer
{
public:
    explicit Namer(QString appName);
    virtual ~Namer() = default;

    /// A picture without words keeps its name.
    Naming name(const PictureReading &reading);

protected:
    /// Gives the file this name. `std::errc::file_exists` has the next one tried.
    virtual std::error_code take(const PictureReading &reading, const QByteArray &newPath) = 0;

private:
    QByteArray wantedName(const PictureReading &reading) const;
    void forget(const QByteArray &path);

    const QString m_appName;
    /// The last counter that a wanted path got: all before it are taken.
    QHash<QByteArray, int> m_counters;
};

/// Only says which names there would be, and touches nothing.
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

/// Renames, and writes each rename into the journal first.
class Renamer : public Namer
{
public:
    /// @param journal must outlive this
    Renamer(const QString &appName, RenameJournal &journal);

    /// The journal takes nothing any more, so nothing more is renamed.
    bool hasLostJournal() const { return m_hasLostJournal; }

protected:
    std::error_code take(const PictureReading &reading, const QByteArray &newPath) override;

private:
    RenameJournal &m_journal;
    bool m_hasLostJournal = false;
};
