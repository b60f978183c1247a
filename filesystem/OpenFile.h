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
    /// Creation, in nanoseconds since 1970; 0 when the file system does not report it. It is needed
    /// because the number of a deleted file is soon another file's.
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
/// moves no position, so that several threads may read from one object.
class OpenFile
{
public:
    /// Null when there is no regular file at the path, or it may not be read.
    static std::shared_ptr<OpenFile> open(const QString &path);
    ~OpenFile();
    Q_DISABLE_COPY_MOVE(OpenFile)

    int descriptor() const { return m_descriptor; }

    /// As it is now.
    std::optional<FileIdentity> identity() const;

    /// Whether it no longer has a name: it was deleted, or another file has taken its place.
    bool isNameless() const;

private:
    explicit OpenFile(int descriptor);

    int m_descriptor;
};

/// The identity of the file open as `descriptor`; nothing when it is not a regular file.
std::optional<FileIdentity> fileIdentity(int descriptor);

/// The identity of the regular file at the path.
std::optional<FileIdentity> fileIdentity(const QString &path);

/// Reads up to `maximum` bytes from the position `from`, fewer at the file's end. Returns how many,
/// or -1 when they can't be read. The descriptor's position does not matter.
qint64 readPart(int descriptor, qint64 from, char *to, qint64 maximum);

/// The whole content. Nothing when it can't be read, is not a regular file or has more than
/// `maximum` bytes. The descriptor's position does not matter.
std::optional<QByteArray> readWhole(int descriptor, qint64 maximum);
