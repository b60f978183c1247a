// SPDX-License-Identifier: MIT
#include "platform/linux/freedesktop/KeyFile.h"

#include "core/readSmallFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

/// Absent when there is something that can't be read as such a file.
std::optional<QList<QByteArray>> linesOf(const QString &path)
{
    const SmallFile file = readSmallFile(path, Links::Follow);
    if (file.state != SmallFile::State::Absent && file.state != SmallFile::State::Read)
        return std::nullopt;
    QList<QByteArray> lines = file.content.split('\n');
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
    value.replace(u"${HOME}"_s, QDir::homePath());
    return value.replace(u"$HOME"_s, QDir::homePath());
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
