// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileTime.h"

#include <QDir>
#include <QString>
#include <QTemporaryDir>

#include <random>

/// A folder reached through a parent that may be a link, a place beside it, and what a user and
/// their programs may do there: one random act after the other, on real files. An act that the
/// system refuses does nothing.
///
/// One act is left out, giving a second name outside to a file of the folder, since nobody can
/// tell the folder's watcher of it.
class RandomHistory
{
public:
    explicit RandomHistory(unsigned int seed);

    QString folder() const { return m_parent + QStringLiteral("/Shots"); }

    /// Does something, to files with dates around `now`, and says what.
    QString act(FileTime now);

    int random(int below);

private:
    QString actOnEntry(int kind, FileTime now);
    QString actOnFolder(int kind);
    QString anyName();
    QString inside(const QString &name) const { return folder() + u'/' + name; }
    QString outside(const QString &name) const { return m_outside + u'/' + name; }
    FileTime anyDate(FileTime now);

    std::mt19937 m_random;
    QTemporaryDir m_directory;
    QString m_parent;
    QString m_outside;
};
