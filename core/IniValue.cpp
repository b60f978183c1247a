// SPDX-License-Identifier: MIT
#include "core/IniValue.h"

#include <QStringList>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

/// Parses the text of a value, from left to right.
class ValueReader
{
public:
    explicit ValueReader(const QByteArray &text) : m_text(QString::fromUtf8(text)) {}

    /// The parts between commas.
    QStringList parts()
    {
        while (m_at < m_text.size()) {
            const QChar letter = m_text[m_at++];
            if (letter == u'"')
                m_isQuoted = !m_isQuoted;
            else if (letter == u'\\')
                readEscape();
            else if (m_isQuoted || !isSeparator(letter))
                take(letter);
            else if (letter == u';')
                break;
            else
                endPart();
        }
        endPart();
        return m_parts;
    }

private:
    static bool isSeparator(QChar letter) { return letter == u',' || letter == u';'; }

    /// Spaces around a part count only if they are quoted.
    void take(QChar letter)
    {
        const bool isSpace = !m_isQuoted && (letter == u' ' || letter == u'\t');
        if (isSpace && m_part.isEmpty() && m_kept == 0)
            return;
        m_part += letter;
        if (!isSpace)
            m_kept = m_part.size();
    }

    void takeEscaped(char16_t letter)
    {
        m_part += QChar(letter);
        m_kept = m_part.size();
    }

    void readEscape()
    {
        constexpr QStringView letters = u"abfnrtv\"?'\\";
        constexpr QStringView meanings = u"\a\b\f\n\r\t\v\"?'\\";
        if (m_at == m_text.size())
            return;
        const QChar code = m_text[m_at++];
        if (const qsizetype known = letters.indexOf(code); known >= 0)
            takeEscaped(meanings[known].unicode());
        else if (code == u'x')
            takeEscaped(readNumber(16));
        else if (code >= u'0' && code <= u'7') {
            --m_at;
            takeEscaped(readNumber(8));
        }
    }

    char16_t readNumber(int base)
    {
        uint number = 0;
        for (bool isDigit = true; m_at < m_text.size(); ++m_at) {
            const uint digit = QString(m_text[m_at]).toUInt(&isDigit, base);
            if (!isDigit)
                break;
            number = number * static_cast<uint>(base) + digit;
        }
        return static_cast<char16_t>(number);
    }

    void endPart()
    {
        m_parts.append(m_part.left(m_kept));
        m_part.clear();
        m_kept = 0;
    }

    QString m_text;
    qsizetype m_at = 0;
    bool m_isQuoted = false;
    QString m_part;
    qsizetype m_kept = 0; ///< length of the part without trailing spaces
    QStringList m_parts;
};

/// "@" marks a value that is not a string; "@@" is an escaped "@". Nothing for values that only
/// QSettings understands.
std::optional<QString> stringOf(const QString &part)
{
    if (!part.startsWith(u'@'))
        return part;
    return part.startsWith(u"@@"_s) ? std::optional(part.mid(1)) : std::nullopt;
}

QByteArray escaped(QChar letter)
{
    switch (letter.unicode()) {
    case u'"':
        return "\\\"";
    case u'\\':
        return "\\\\";
    case u'\n':
        return "\\n";
    case u'\r':
        return "\\r";
    case u'\t':
        return "\\t";
    default:
        return "\\x" + QByteArray::number(letter.unicode(), 16);
    }
}

bool isHexDigit(QChar letter)
{
    return QStringView(u"0123456789abcdefABCDEF").contains(letter);
}

QByteArray escapedLetters(const QString &string)
{
    QByteArray result;
    QString plain;
    bool wasNumber = false;
    for (const QChar letter : string) {
        if (letter >= u' ' && letter != u'"' && letter != u'\\' &&
            !(wasNumber && isHexDigit(letter))) {
            plain += letter;
            wasNumber = false;
            continue;
        }
        const QByteArray code = escaped(letter);
        result += plain.toUtf8() + code;
        plain.clear();
        wasNumber = code.startsWith("\\x");
    }
    return result + plain.toUtf8();
}

/// Quoted if it contains a character that would otherwise end it.
QByteArray written(QString string)
{
    if (string.startsWith(u'@'))
        string.prepend(u'@');
    const bool needsQuotes =
        std::any_of(string.cbegin(), string.cend(),
                    [](QChar letter) { return QStringView(u";,=").contains(letter); }) ||
        string.startsWith(u' ') || string.endsWith(u' ');
    const QByteArray letters = escapedLetters(string);
    return needsQuotes ? '"' + letters + '"' : letters;
}

} // namespace

namespace IniValue
{

QVariant read(const QByteArray &text)
{
    const QStringList parts = ValueReader(text).parts();
    QStringList strings;
    for (const QString &part : parts) {
        const std::optional<QString> string = stringOf(part);
        if (!string)
            return {};
        strings.append(*string);
    }
    return strings.size() == 1 ? QVariant(strings.first()) : QVariant(strings);
}

QByteArray write(const QVariant &value)
{
    if (value.typeId() != QMetaType::QStringList)
        return written(value.toString());
    const QStringList strings = value.toStringList();
    if (strings.isEmpty())
        return "@Invalid()";
    QByteArrayList parts;
    for (const QString &string : strings)
        parts.append(written(string));
    return parts.join(", ");
}

} // namespace IniValue
