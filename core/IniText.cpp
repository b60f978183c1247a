// SPDX-License-Identifier: MIT
#include "core/IniText.h"

#include "core/IniValue.h"

#include <algorithm>

namespace
{

struct Line {
    QByteArray text;
    /// Set only if the line is a value of the group.
    QString key;
};

bool isComment(const QByteArray &trimmed)
{
    return trimmed.startsWith(';') || trimmed.startsWith('#');
}

QByteArray headerOf(const QByteArray &group)
{
    return '[' + group + ']';
}

/// Lines before the first group belong to "General" too.
QList<Line> linesOf(const QByteArray &text, const QByteArray &group)
{
    QList<Line> lines;
    bool isInGroup = group == "General";
    for (QByteArray line : text.split('\n')) {
        const QByteArray trimmed = line.trimmed();
        QString key;
        if (trimmed.startsWith('['))
            isInGroup = trimmed.compare(headerOf(group), Qt::CaseInsensitive) == 0;
        else if (const qsizetype equals = trimmed.indexOf('=');
                 isInGroup && equals > 0 && !isComment(trimmed))
            key = QString::fromUtf8(trimmed.left(equals).trimmed());
        lines.append({std::move(line), key});
    }
    if (lines.last().text.isEmpty())
        lines.removeLast();
    return lines;
}

/// Where a new value goes: after the last non-empty line of the group.
qsizetype endOfGroup(QList<Line> &lines, const QByteArray &group)
{
    const auto header = std::find_if(lines.begin(), lines.end(), [&group](const Line &line) {
        return line.text.trimmed().compare(headerOf(group), Qt::CaseInsensitive) == 0;
    });
    if (header == lines.end()) {
        // Keys without a header are General's, and stay so.
        if (group == "General") {
            lines.prepend({headerOf(group), {}});
            return endOfGroup(lines, group);
        }
        lines.append({headerOf(group), {}});
        return lines.size();
    }
    auto end = header + 1;
    for (auto line = end; line != lines.end() && !line->text.trimmed().startsWith('['); ++line) {
        if (!line->text.trimmed().isEmpty())
            end = line + 1;
    }
    return end - lines.begin();
}

void change(QList<Line> &lines, const QByteArray &group, const QString &key, const QVariant &value)
{
    const auto isOld = [&key](const Line &line) { return line.key == key; };
    const auto first = std::find_if(lines.begin(), lines.end(), isOld);
    qsizetype place = first - lines.begin();
    const bool isThere = first != lines.end();
    lines.removeIf(isOld);
    if (!value.isValid())
        return;
    if (!isThere)
        place = endOfGroup(lines, group);
    lines.insert(place, {key.toUtf8() + '=' + IniValue::write(value), key});
}

} // namespace

namespace IniText
{

QHash<QString, QVariant> values(const QByteArray &text, const QByteArray &group)
{
    QHash<QString, QVariant> values;
    for (const Line &line : linesOf(text, group)) {
        if (line.key.isEmpty())
            continue;
        const QVariant value = IniValue::read(line.text.mid(line.text.indexOf('=') + 1).trimmed());
        if (value.isValid())
            values.insert(line.key, value);
        else
            values.remove(line.key);
    }
    return values;
}

QByteArray changed(const QByteArray &text, const QMap<QString, QVariant> &changes,
                   const QByteArray &group)
{
    QList<Line> lines = linesOf(text, group);
    for (auto each = changes.cbegin(); each != changes.cend(); ++each)
        change(lines, group, each.key(), each.value());
    QByteArray result;
    for (const Line &line : lines)
        result += line.text + '\n';
    return result;
}

} // namespace IniText
