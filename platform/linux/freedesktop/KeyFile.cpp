#include "platform/linux/freedesktop/KeyFile.h"

#include "filesystem/OpenFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace
{

/// Far more than any file of settings holds.
constexpr qint64 largestFile = 1 << 20; // bytes

/// Absent when the file is there and can't be read, or is no regular file: reading a pipe would
/// wait for its writer.
std::optional<QList<QByteArray>> linesOf(const QString &path)
{
    if (!QFile::exists(path))
        return QList<QByteArray>();
    const std::shared_ptr<OpenFile> file = OpenFile::open(path);
    const std::optional<QByteArray> content =
        file ? readWhole(file->descriptor(), largestFile) : std::nullopt;
    if (!content)
        return std::nullopt;
    QList<QByteArray> lines = content->split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

bool isGroup(const QByteArray &line)
{
    return line.trimmed().startsWith('[');
}

QByteArray unescaped(const QByteArray &value)
{
    QByteArray result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        switch (const char code = value[++i]) {
        case 's':
            result += ' ';
            break;
        case 'n':
            result += '\n';
            break;
        case 't':
            result += '\t';
            break;
        case 'r':
            result += '\r';
            break;
        case 'x':
            result += QByteArray::fromHex(value.mid(i + 1, 2));
            i += 2;
            break;
        default:
            result += code;
        }
    }
    return result;
}

QString withHome(QString value)
{
    value.replace(QStringLiteral("${HOME}"), QDir::homePath());
    return value.replace(QStringLiteral("$HOME"), QDir::homePath());
}

} // namespace

namespace KeyFile
{

std::optional<QString> value(const QString &file, const QByteArray &group, const QByteArray &key)
{
    const QByteArray header = group.isEmpty() ? group : QByteArray('[' + group + ']');
    QByteArray current;
    const QList<QByteArray> lines = linesOf(file).value_or(QList<QByteArray>());
    for (const QByteArray &line : lines) {
        if (isGroup(line)) {
            current = line.trimmed();
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (current != header || equals < 0)
            continue;
        const QByteArray name = line.left(equals).trimmed();
        const QString text = QString::fromUtf8(unescaped(line.mid(equals + 1).trimmed()));
        if (name == key || name == key + "[$i]")
            return text;
        if (name == key + "[$e]" || name == key + "[$ei]" || name == key + "[$ie]")
            return withHome(text);
    }
    return std::nullopt;
}

bool replaceLine(const QString &file, const QByteArray &start, const QByteArray &line)
{
    std::optional<QList<QByteArray>> lines = linesOf(file);
    if (!lines || !QDir().mkpath(QFileInfo(file).path()))
        return false;
    const auto group = std::find_if(lines->begin(), lines->end(), isGroup);
    const auto old = std::find_if(lines->begin(), group, [&start](const QByteArray &candidate) {
        return candidate.startsWith(start);
    });
    if (old != group)
        *old = line;
    else
        lines->insert(group, line);
    QSaveFile saved(file);
    return saved.open(QIODevice::WriteOnly) && saved.write(lines->join('\n') + '\n') > 0 &&
           saved.commit();
}

} // namespace KeyFile
