// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

/// Identifies a file and its state. Equal identities mean the same bytes.
struct FileIdentity {
    quint64 device = 0;
    quint64 serial = 0;       ///< the file's number on its device
    qint64 size = 0;          ///< bytes
    qint64 modified = 0;      ///< nanoseconds since 1970
    qint64 statusChanged = 0; ///< nanoseconds since 1970: the last change of any kind
    /// Nanoseconds since 1970; 0 where the file system does not say. The number of a file that is
    /// gone is soon another file's.
    qint64 made = 0;

    bool sameFile(const FileIdentity &other) const
    {
        return device == other.device && serial == other.serial && made == other.made;
    }
    bool sameContent(const FileIdentity &other) const
    {
        return sameFile(other) && size == other.size && modified == other.modified;
    }
};

/// A regular file that is open for reading. Opening never blocks on a pipe or a device. Reading
/// does not move a position, so several threads may read from one object.
class OpenFile
{
public:
    /// Null when there is no regular file at the path or it may not be read.
    static std::shared_ptr<OpenFile> open(const QString &path);
    ~OpenFile();
    Q_DISABLE_COPY_MOVE(OpenFile)

    int descriptor() const { return m_descriptor; }

    /// As it is now.
    std::optional<FileIdentity> identity() const;

    /// Whether it has no name any more: it was deleted, or another file has taken its place.
    bool isNameless() const;

private:
    explicit OpenFile(int descriptor);

    int m_descriptor;
};

/// Of what is open as `descriptor`; nothing when that is no regular file.
std::optional<FileIdentity> fileIdentity(int descriptor);

/// Of the regular file at the path.
std::optional<FileIdentity> fileIdentity(const QString &path);

/// Up to `maximum` bytes from the position `from`, fewer at the file's end. Returns how many; -1
/// when they can't be read. The descriptor's position does not matter.
qint64 readPart(int descriptor, qint64 from, char *to, qint64 maximum);

/// The whole content. Nothing when it can't be read, is no regular file or has more than `maximum`
/// bytes. The descriptor's position does not matter.
std::optional<QByteArray> readWhole(int descriptor, qint64 maximum);
