// SPDX-License-Identifier: MIT
#include "search/secrets.h"

#include <QList>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

using Matches = QRegularExpressionMatchIterator;

struct Span {
    qsizetype begin;
    qsizetype end;
};

QRegularExpression expression(const QString &pattern)
{
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption |
                                           QRegularExpression::UseUnicodePropertiesOption);
}

/// The check that every payment card number passes.
bool passesLuhn(QStringView digits)
{
    int sum = 0;
    bool isDoubled = false;
    for (qsizetype at = digits.size() - 1; at >= 0; --at) {
        const int digit = digits[at].digitValue() * (isDoubled ? 2 : 1);
        sum += digit > 9 ? digit - 9 : digit;
        isDoubled = !isDoubled;
    }
    return sum % 10 == 0;
}

/// The check of ISO 13616: the first four characters move to the end, and letters count from ten.
bool passesIban(QStringView account)
{
    int rest = 0;
    const QString turned = account.sliced(4).toString() + account.first(4).toString();
    for (const QChar character : turned) {
        const int value =
            character.isDigit() ? character.digitValue() : character.toUpper().unicode() - 'A' + 10;
        rest = (rest * (value > 9 ? 100 : 10) + value) % 97;
    }
    return rest == 1;
}

/// Finds adjacent groups, perhaps with a separator or line break between them, that together have
/// between `least` and `most` characters and pass the check.
template <typename Check>
void findGroups(const QString &text, const QRegularExpression &group, qsizetype least,
                qsizetype most, Check check, QList<Span> &found)
{
    constexpr qsizetype longestGap = 2;
    QList<Span> groups;
    for (Matches each = group.globalMatch(text); each.hasNext();) {
        const auto match = each.next();
        groups.append({match.capturedStart(), match.capturedEnd()});
    }
    for (qsizetype first = 0; first < groups.size(); ++first) {
        QString joined;
        for (qsizetype last = first; last < groups.size(); ++last) {
            if (last > first && groups[last].begin - groups[last - 1].end > longestGap)
                break;
            joined +=
                QStringView(text).sliced(groups[last].begin, groups[last].end - groups[last].begin);
            if (joined.size() > most)
                break;
            if (joined.size() >= least && check(joined))
                found.append({groups[first].begin, groups[last].end});
        }
    }
}

void findCards(const QString &text, QList<Span> &found)
{
    static const QRegularExpression digits = expression(u"[0-9]+"_s);
    findGroups(text, digits, 13, 19, passesLuhn, found);
}

void findAccounts(const QString &text, QList<Span> &found)
{
    static const QRegularExpression group = expression(u"[A-Z0-9]+"_s);
    findGroups(
        text, group, 15, 34,
        [](const QString &account) {
            return account[0].isLetter() && account[1].isLetter() && account[2].isDigit() &&
                   account[3].isDigit() && passesIban(account);
        },
        found);
}

/// Whether a person is unlikely to have written this run of letters and digits: it is long and has
/// digits, either in several places or among capitals throughout.
bool looksRandom(QStringView run)
{
    constexpr qsizetype least = 16;
    constexpr int leastTurns = 3;
    constexpr qsizetype leastWithFewDigits = 24;
    bool hasDigit = false;
    int digitTurns = 0;
    int caseTurns = 0;
    for (qsizetype at = 0; at < run.size(); ++at) {
        const QChar character = run[at];
        hasDigit = hasDigit || character.isDigit();
        if (at == 0)
            continue;
        const QChar before = run[at - 1];
        digitTurns += character.isDigit() != before.isDigit() ? 1 : 0;
        caseTurns += character.isUpper() != before.isUpper() ? 1 : 0;
    }
    return run.size() >= least && hasDigit &&
           (digitTurns >= leastTurns ||
            (run.size() >= leastWithFewDigits && caseTurns >= run.size() / 3));
}

void findKeys(const QString &text, QList<Span> &found)
{
    // Keys and tokens with a known prefix.
    static const QRegularExpression marked = expression(
        u"\\b(sk|pk|rk)[-_](live|test|proj|ant)?[-_]?[\\w-]{8,}|\\bgh[pousr]_\\w{8,}"
        "|\\bgithub_pat_\\w+|\\bglpat-[\\w-]+|\\bxox[abeprs]-[\\w-]+|\\bAKIA[0-9A-Z]{12,}"
        "|\\bAIza[\\w-]{20,}|\\bey[A-Za-z0-9_-]{10,}\\.[\\w-]+(\\.[\\w-]*)?"
        "|-----BEGIN [A-Z ]*KEY-----[\\s\\S]*?(-----END [A-Z ]*KEY-----|$)"
        "|\\bssh-(rsa|ed25519|dss)\\s+\\S+|\\bbearer\\s+\\S{8,}"
        "|\\b[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\b"_s);
    for (Matches each = marked.globalMatch(text); each.hasNext();) {
        const auto match = each.next();
        found.append({match.capturedStart(), match.capturedEnd()});
    }
    // The whole word is removed, so that no part of it remains.
    static const QRegularExpression word = expression(u"[A-Z0-9+/=_.~-]{16,}"_s);
    static const QRegularExpression run = expression(u"[A-Z0-9+/]+"_s);
    for (Matches words = word.globalMatch(text); words.hasNext();) {
        const auto match = words.next();
        for (Matches runs = run.globalMatch(match.capturedView()); runs.hasNext();) {
            const QString part = runs.next().captured();
            const QStringList names = part.split(u'/');
            if (std::any_of(names.begin(), names.end(), looksRandom))
                found.append({match.capturedStart(), match.capturedEnd()});
        }
    }
}

/// On the line of a word such as "verification code", and on the next two.
void findCodes(const QString &text, QList<Span> &found)
{
    static const QRegularExpression label = expression(
        u"\\b(code|codes|otp|2fa|totp|pin|tan|mtan|passcode|one[- ]time|verification"
        "|verify|authenticat\\w*|\\w*code|c[oó]digo|codice|kod|kode|koodi|einmal\\w*"
        "|best[aä]tigungs\\w*|verificatie\\w*|код)\\b|验证码|認証コード|確認コード|인증번호"_s);
    static const QRegularExpression code =
        expression(u"(?<![\\w.,/:])([A-Z]-)?[0-9]{3,4}[ -]?[0-9]{1,4}(?![\\w/:]|[.,][0-9])"_s);
    for (Matches labels = label.globalMatch(text); labels.hasNext();) {
        const qsizetype at = labels.next().capturedStart();
        const qsizetype begin = at == 0 ? 0 : text.lastIndexOf(u'\n', at - 1) + 1;
        qsizetype end = at;
        for (int line = 0; line < 3 && end >= 0; ++line)
            end = text.indexOf(u'\n', line == 0 ? end : end + 1);
        const QStringView area =
            QStringView(text).sliced(begin, (end < 0 ? text.size() : end) - begin);
        for (Matches codes = code.globalMatch(area); codes.hasNext();) {
            const auto match = codes.next();
            found.append({begin + match.capturedStart(), begin + match.capturedEnd()});
        }
    }
}

/// The rest of the line, or the next line if the word is the last on its own.
void findPasswords(const QString &text, QList<Span> &found)
{
    static const QRegularExpression label = expression(
        u"(\\b(password|passwords|passwd|passphrase|pass[- ]phrase|pwd|passwort|kennwort|wachtwoord"
        "|contrase[nñ]a|mot de passe|senha|palavra-passe|l[oö]senord|adgangskode|passord"
        "|salasana|has[lł]o|heslo|jelsz[oó]|parol[aă]?|şifre|пароль|api[- _]?key|secret[- _]key"
        "|client[- _]secret|recovery (key|phrase)|seed phrase)\\b|密码|密碼|パスワード|비밀번호)"
        "[^\\S\\n]*[:=]?[^\\S\\n]*(\\n?[^\\n]*)"_s);
    for (Matches each = label.globalMatch(text); each.hasNext();) {
        const auto match = each.next();
        const int rest = match.lastCapturedIndex();
        found.append({match.capturedStart(rest), match.capturedEnd(rest)});
    }
}

QString without(const QString &text, QList<Span> spans)
{
    std::sort(spans.begin(), spans.end(),
              [](const Span &one, const Span &other) { return one.begin < other.begin; });
    QString kept;
    qsizetype from = 0;
    for (const Span &span : spans) {
        if (span.begin > from)
            kept += QStringView(text).sliced(from, span.begin - from);
        const qsizetype begin = std::max(from, span.begin);
        if (span.end <= begin)
            continue;
        // Keep the line breaks.
        const auto breaks = QStringView(text).sliced(begin, span.end - begin).count(u'\n');
        kept += breaks > 0 ? QString(breaks, u'\n') : u" "_s;
        from = span.end;
    }
    return kept + QStringView(text).sliced(from);
}

} // namespace

QStringList withoutSecrets(const QStringList &lines)
{
    const QString text = lines.join(u'\n');
    QList<Span> secrets;
    findCards(text, secrets);
    findAccounts(text, secrets);
    findKeys(text, secrets);
    findCodes(text, secrets);
    findPasswords(text, secrets);
    return without(text, secrets).split(u'\n');
}
