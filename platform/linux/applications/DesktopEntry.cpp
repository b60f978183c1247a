// SPDX-License-Identifier: MIT
#include "platform/linux/applications/DesktopEntry.h"

#include "core/readSmallFile.h"

namespace
{

QByteArray environment(const char *name)
{
    return qgetenv(name);
}

/// The first of the variables that decide on the language of messages.
QByteArray messageLocale()
{
    for (const char *name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const QByteArray value = environment(name); !value.isEmpty())
            return value;
    }
    return {};
}

void appendForms(QList<QByteArray> &languages, QByteArray locale)
{
    QByteArray modifier;
    QByteArray country;
    if (const qsizetype at = locale.indexOf('@'); at >= 0) {
        modifier = locale.mid(at);
        locale.truncate(at);
    }
    if (const qsizetype dot = locale.indexOf('.'); dot >= 0)
        locale.truncate(dot);
    if (const qsizetype line = locale.indexOf('_'); line >= 0) {
        country = locale.mid(line);
        locale.truncate(line);
    }
    const QList<QByteArray> forms = {locale + country + modifier, locale + country,
                                     locale + modifier, locale};
    for (const QByteArray &form : forms) {
        if (!form.isEmpty() && !languages.contains(form))
            languages.append(form);
    }
}

QString unescaped(const QByteArray &value)
{
    const QString text = QString::fromUtf8(value);
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        const QChar code = text[++i];
        if (code == u's')
            result += u' ';
        else if (code == u'n')
            result += u'\n';
        else if (code == u't')
            result += u'\t';
        else if (code == u'r')
            result += u'\r';
        else
            result += code;
    }
    return result;
}

} // namespace

std::optional<DesktopEntry> DesktopEntry::read(const QString &path)
{
    const QByteArray content = contentOfSmallFile(path, Links::Follow).value_or(QByteArray());
    DesktopEntry entry;
    bool inGroup = false;
    for (qsizetype begin = 0; begin < content.size();) {
        qsizetype end = content.indexOf('\n', begin);
        if (end < 0)
            end = content.size();
        const QByteArray line = content.mid(begin, end - begin).trimmed();
        begin = end + 1;
        if (line.startsWith('[')) {
            if (inGroup)
                break;
            inGroup = line == "[Desktop Entry]";
        } else if (const qsizetype equals = line.indexOf('=');
                   inGroup && equals > 0 && line[0] != '#') {
            entry.m_values.insert(line.left(equals).trimmed(), line.mid(equals + 1).trimmed());
        }
    }
    return entry.m_values.isEmpty() ? std::nullopt : std::optional(entry);
}

QString DesktopEntry::string(const QByteArray &key) const
{
    return unescaped(m_values.value(key));
}

QString DesktopEntry::localizedString(const QByteArray &key,
                                      const QList<QByteArray> &languages) const
{
    for (const QByteArray &language : languages) {
        const auto found = m_values.constFind(key + '[' + language + ']');
        if (found != m_values.cend() && !found->isEmpty())
            return unescaped(*found);
    }
    return string(key);
}

QStringList DesktopEntry::list(const QByteArray &key) const
{
    QStringList result;
    for (const QString &part : string(key).split(u';')) {
        if (!part.isEmpty())
            result.append(part);
    }
    return result;
}

std::optional<bool> DesktopEntry::boolean(const QByteArray &key) const
{
    const QByteArray value = m_values.value(key);
    if (value == "true" || value == "1")
        return true;
    if (value == "false" || value == "0")
        return false;
    return std::nullopt;
}

bool DesktopEntry::isApplication() const
{
    return m_values.value("Type") == "Application" && !boolean("Hidden").value_or(false);
}

QList<QByteArray> messageLanguages()
{
    const QByteArray locale = messageLocale();
    const QByteArray language = locale.split('.').first();
    QList<QByteArray> languages;
    if (language.isEmpty() || language == "C" || language == "POSIX")
        return languages;
    for (const QByteArray &preferred : environment("LANGUAGE").split(':')) {
        if (!preferred.isEmpty())
            appendForms(languages, preferred);
    }
    appendForms(languages, locale);
    return languages;
}
