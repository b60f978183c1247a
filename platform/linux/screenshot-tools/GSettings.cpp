#include "platform/linux/screenshot-tools/GSettings.h"

#include <QProcess>
#include <QStandardPaths>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

constexpr std::chrono::milliseconds longestWait = 1s;

QString tool()
{
    return QStandardPaths::findExecutable(QStringLiteral("gsettings"));
}

/// The command speaks the text form of values: a string in quotes.
std::optional<QString> unquoted(const QString &text)
{
    if (text.size() < 2 || text.front() != text.back() ||
        (text.front() != u'\'' && text.front() != u'"'))
        return std::nullopt;
    QString result;
    for (qsizetype i = 1; i < text.size() - 1; ++i)
        result += text[i] == u'\\' ? text[++i] : text[i];
    return result;
}

QString quoted(QString value)
{
    value.replace(u'\\', QStringLiteral("\\\\")).replace(u'\'', QStringLiteral("\\'"));
    return u'\'' + value + u'\'';
}

} // namespace

namespace GSettings
{

std::optional<QString> string(const QString &schema, const QString &key)
{
    const QString executable = tool();
    if (executable.isEmpty())
        return std::nullopt;
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(executable, {QStringLiteral("get"), schema, key});
    if (!process.waitForFinished(static_cast<int>(longestWait.count())) || process.exitCode() != 0)
        return std::nullopt;
    return unquoted(QString::fromUtf8(process.readAllStandardOutput()).trimmed());
}

QList<SystemCommand> storeString(const QString &schema, const QString &key, const QString &value)
{
    const QString executable = tool();
    if (executable.isEmpty())
        return {};
    return {{executable, {QStringLiteral("set"), schema, key, quoted(value)}}};
}

} // namespace GSettings
