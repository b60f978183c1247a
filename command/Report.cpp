// SPDX-License-Identifier: MIT
#include "command/Report.h"

#include "command/filePaths.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace
{

/// JSON can only contain text, so a path that is not valid UTF-8 is also inserted as bytes.
void insertPath(QJsonObject &object, const QString &key, const QByteArray &path)
{
    const QString text = QString::fromUtf8(path);
    object.insert(key, text);
    if (text.toUtf8() != path)
        object.insert(key + u"Base64"_s, QString::fromLatin1(path.toBase64()));
}

} // namespace

Report::Report(Console &console, OutputFormat format) : m_console(console), m_format(format) {}

bool Report::name(const QByteArray &oldPath, const QByteArray &newPath, Renamed renamed)
{
    if (m_format != OutputFormat::Json)
        return fields(oldPath, newPath);
    QJsonObject picture{{u"renamed"_s, renamed == Renamed::Yes}};
    insertPath(picture, u"old"_s, oldPath);
    insertPath(picture, u"new"_s, newPath);
    return object(picture);
}

bool Report::text(const QByteArray &path, const QStringList &lines, Paths paths)
{
    if (m_format == OutputFormat::Null)
        return fields(path, lines.join(u'\n').toUtf8());
    if (m_format == OutputFormat::Json) {
        QJsonObject picture{{u"lines"_s, QJsonArray::fromStringList(lines)}};
        insertPath(picture, u"file"_s, path);
        return object(picture);
    }
    QByteArray text;
    const QByteArray opening =
        paths == Paths::Shown ? FilePaths::escaped(path) + '\t' : QByteArray();
    for (const QString &line : lines)
        text += opening + FilePaths::escaped(line.toUtf8()) + '\n';
    return m_console.print(text);
}

bool Report::found(const QByteArray &path, const QString &line)
{
    if (m_format == OutputFormat::Null)
        return m_console.print(path + '\0');
    if (m_format == OutputFormat::Lines)
        return m_console.print(FilePaths::escaped(path) + '\n');
    QJsonObject picture{{u"line"_s, line}};
    insertPath(picture, u"file"_s, path);
    return object(picture);
}

bool Report::failure(const QByteArray &path, const QByteArray &reason)
{
    ++m_failures;
    m_console.complain(FilePaths::escaped(path) + ": " + reason);
    if (m_format != OutputFormat::Json)
        return true;
    QJsonObject picture{{u"error"_s, QString::fromUtf8(reason)}};
    insertPath(picture, u"file"_s, path);
    return object(picture);
}

void Report::note(const QByteArray &text)
{
    m_console.complain(text);
}

bool Report::fields(const QByteArray &first, const QByteArray &second)
{
    if (m_format == OutputFormat::Null)
        return m_console.print(first + '\0' + second + '\0');
    return m_console.print(FilePaths::escaped(first) + '\t' + FilePaths::escaped(second) + '\n');
}

bool Report::object(const QJsonObject &object)
{
    return m_console.print(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}
