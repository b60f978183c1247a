// SPDX-License-Identifier: MIT
#include "imaging/pictureEnd.h"

#include <QByteArray>
#include <QtEndian>

#include <string_view>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

using namespace std::string_view_literals;

/// More than any picture has; stops at a file that was made to be slow.
constexpr int mostParts = 100'000;

/// Reads a file at any position.
class Bytes
{
public:
    explicit Bytes(int descriptor) : m_descriptor(descriptor)
    {
        struct stat status = {};
        m_size = ::fstat(descriptor, &status) == 0 ? status.st_size : 0;
    }

    qint64 size() const { return m_size; }

    /// This many bytes; empty when the file does not have them.
    QByteArray at(qint64 position, qint64 count) const
    {
        if (position < 0 || position > m_size || count > m_size - position)
            return {};
        QByteArray bytes(count, Qt::Uninitialized);
        const ssize_t got =
            ::pread(m_descriptor, bytes.data(), static_cast<size_t>(count), position);
        return got == count ? bytes : QByteArray();
    }

private:
    int m_descriptor;
    qint64 m_size = 0;
};

bool beginsWith(const QByteArray &bytes, std::string_view beginning)
{
    return bytes.startsWith(QByteArrayView(beginning.data(), qsizetype(beginning.size())));
}

/// A chunk consists of its length, its kind, its content and a checksum.
bool reachesPngEnd(const Bytes &file)
{
    qint64 position = 8;
    for (int part = 0; part < mostParts; ++part) {
        const QByteArray header = file.at(position, 8);
        if (header.isEmpty())
            return false;
        position += 12 + qint64(qFromBigEndian<quint32>(header.constData()));
        if (header.endsWith("IEND"))
            return position <= file.size();
    }
    return false;
}

bool endsAsJpeg(const Bytes &file)
{
    return file.at(file.size() - 2, 2) == "\xFF\xD9";
}

/// Boxes within boxes: those of the outermost level fill the file, and "mdat" holds the pixels.
bool reachesHeicEnd(const Bytes &file)
{
    bool hasPixels = false;
    bool hasDirectory = false;
    qint64 position = 0;
    for (int part = 0; part < mostParts && position < file.size(); ++part) {
        const QByteArray header = file.at(position, 8);
        if (header.isEmpty())
            return false;
        qint64 size = qFromBigEndian<quint32>(header.constData());
        if (size == 1) {
            const QByteArray large = file.at(position + 8, 8);
            size = large.isEmpty() ? 0 : qFromBigEndian<qint64>(large.constData());
        }
        // A box without a size extends to the end of the file, wherever that will be.
        if (size < 8 || size > file.size() - position)
            return false;
        hasPixels = hasPixels || header.endsWith("mdat");
        hasDirectory = hasDirectory || header.endsWith("meta");
        position += size;
    }
    return hasPixels && hasDirectory && position == file.size();
}

/// The numbers of a TIFF, in the byte order that its header states.
class Tiff
{
public:
    explicit Tiff(const Bytes &file) : m_file(file), m_isLittle(file.at(0, 2) == "II") {}

    /// Whether the first directory is there, and the strips or tiles that it names are within the
    /// file.
    bool isWhole() const
    {
        const qint64 directory = number(4, 4);
        const qint64 entries = directory >= 8 ? number(directory, 2) : -1;
        if (entries <= 0 || m_file.at(directory, 2 + entries * 12 + 4).isEmpty())
            return false;
        const std::vector<qint64> offsets = values(directory, entries, {stripOffsets, tileOffsets});
        const std::vector<qint64> counts = values(directory, entries, {stripCounts, tileCounts});
        if (offsets.empty() || offsets.size() != counts.size())
            return false;
        for (size_t i = 0; i < offsets.size(); ++i) {
            if (offsets[i] < 8 || counts[i] <= 0 || offsets[i] + counts[i] > m_file.size())
                return false;
        }
        return true;
    }

private:
    static constexpr int stripOffsets = 273;
    static constexpr int stripCounts = 279;
    static constexpr int tileOffsets = 324;
    static constexpr int tileCounts = 325;
    static constexpr int shortNumbers = 3;
    static constexpr int longNumbers = 4;

    /// -1 when the file ends before it.
    qint64 number(qint64 position, int bytes) const
    {
        const QByteArray raw = m_file.at(position, bytes);
        if (raw.isEmpty())
            return -1;
        if (bytes == 2)
            return m_isLittle ? qFromLittleEndian<quint16>(raw.constData())
                              : qFromBigEndian<quint16>(raw.constData());
        return m_isLittle ? qFromLittleEndian<quint32>(raw.constData())
                          : qFromBigEndian<quint32>(raw.constData());
    }

    /// All numbers of the entry with one of these tags.
    std::vector<qint64> values(qint64 directory, qint64 entries,
                               std::initializer_list<int> tags) const
    {
        for (qint64 entry = directory + 2; entry < directory + 2 + entries * 12; entry += 12) {
            const auto tag = static_cast<int>(number(entry, 2));
            if (std::find(tags.begin(), tags.end(), tag) == tags.end())
                continue;
            const qint64 kind = number(entry + 2, 2);
            const int width = kind == shortNumbers ? 2 : 4;
            const qint64 count = number(entry + 4, 4);
            if ((kind != shortNumbers && kind != longNumbers) || count > mostParts)
                return {};
            const qint64 position = count * width <= 4 ? entry + 8 : number(entry + 8, 4);
            std::vector<qint64> result;
            for (qint64 i = 0; i < count; ++i)
                result.push_back(number(position + i * width, width));
            return result;
        }
        return {};
    }

    const Bytes &m_file;
    bool m_isLittle;
};

} // namespace

bool reachesPictureEnd(int descriptor)
{
    const Bytes file(descriptor);
    const QByteArray beginning = file.at(0, 12);
    if (beginsWith(beginning, "\x89PNG\r\n\x1A\n"sv))
        return reachesPngEnd(file);
    if (beginsWith(beginning, "\xFF\xD8\xFF"sv))
        return endsAsJpeg(file);
    if (beginsWith(beginning, "II*\0"sv) || beginsWith(beginning, "MM\0*"sv))
        return Tiff(file).isWhole();
    return beginning.mid(4, 4) == "ftyp" && reachesHeicEnd(file);
}
