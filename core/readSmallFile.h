// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Far more than any file of settings holds; what is larger is something else.
constexpr qint64 largestSmallFile = 1 << 20; // bytes

enum class Links { Follow, Refuse };

/// What stands at a path, as far as it can be read as a file of settings.
struct SmallFile {
    enum class State {
        Absent, ///< nothing stands there
        Read,   ///< a regular file, and this is all of it
        Unfit,  ///< something else, too large, or not for this user to read
        Failed, ///< the disk could not say
    };

    State state = State::Absent;
    QByteArray content;
};

/// Reads the file at `path`. Whatever stands there (a pipe, a device, a link to one, a huge file),
/// opening it neither waits nor does anything, and never more than `largestSmallFile` is read. A
/// refused link is unfit; links among the folders above are followed. Any thread; blocks for the
/// disk.
SmallFile readSmallFile(const QString &path, Links links);

/// The content, or nothing.
std::optional<QByteArray> contentOfSmallFile(const QString &path, Links links);
