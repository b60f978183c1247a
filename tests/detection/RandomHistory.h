// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileTime.h"

#include <QDir>
#include <QString>
#include <QTemporaryDir>

#include <random>

using namespace Qt::StringLiterals;

/// A folder reached through a parent that may be a link, a second folder beside it, and what a user
/// and their programs may do there: one random action after the other, on real files. An action
/// that the system refuses does nothing.
///
/// One action is left out: giving a file of the folder a second name outside, because no event can
/// report that to the folder's watcher.
class RandomHistory
{
public:
    explicit RandomHistory(unsigned int seed);

    QString folder() const { return m_parent + u"/Shots"_s; }

    /// Performs an action on files with dates around `now`, and describes it.
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
