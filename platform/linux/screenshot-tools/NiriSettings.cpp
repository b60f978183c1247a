// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/NiriSettings.h"

#include "core/readSmallFile.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>

#include <array>
#include <ctime>

using namespace Qt::StringLiterals;

namespace
{

/// The same way as the compositor.
QString withToday(const QString &pattern)
{
    const std::time_t now = std::time(nullptr);
    std::tm parts = {};
    ::localtime_r(&now, &parts);
    std::array<char, 4096> text;
    const size_t size =
        std::strftime(text.data(), text.size(), pattern.toUtf8().constData(), &parts);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(size));
}

} // namespace

namespace NiriSettings
{

QString file()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/niri/config.kdl"_s;
}

std::optional<QString> folder()
{
    const QString text =
        QString::fromUtf8(contentOfSmallFile(file(), Links::Follow).value_or(QByteArray()));
    static const QRegularExpression line(
        uR"re(^[ \t]*screenshot-path[ \t]+(?:(null|#null)|"([^"\\]*)"))re"_s,
        QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = line.match(text);
    if (!match.capturedView(1).isEmpty())
        return std::nullopt;
    QString path = match.hasMatch() ? match.captured(2) : u"~/Pictures/Screenshots/name.png"_s;
    if (path.startsWith(u"~/"_s))
        path.replace(0, 1, QDir::homePath());
    return QDir::isAbsolutePath(path) ? std::optional(QFileInfo(withToday(path)).path())
                                      : std::nullopt;
}

} // namespace NiriSettings
