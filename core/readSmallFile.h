// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Far larger than any settings file.
constexpr qint64 largestSmallFile = 1 << 20; // bytes

enum class Links { Follow, Refuse };

/// The result of reading a path as a settings file.
struct SmallFile {
    enum class State {
        Absent, ///< nothing is there
        Read,   ///< a regular file; `content` is all of it
        Unfit,  ///< something else, too large, or not readable by this user
        Failed, ///< the disk reported an error
    };

    State state = State::Absent;
    QByteArray content;
};

/// Reads the file at `path`. Whatever is there (a pipe, a device, a link to one, a huge file),
/// opening it neither blocks nor has side effects, and at most `largestSmallFile` bytes are read.
/// With Links::Refuse, a link at `path` is unfit; links among its parent folders are followed. Any
/// thread; blocks for the disk.
SmallFile readSmallFile(const QString &path, Links links);

/// The content if it could be read.
std::optional<QByteArray> contentOfSmallFile(const QString &path, Links links);
