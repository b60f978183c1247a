#include "core/VelmoraSettings.h"

#include <QFile>

#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr auto copyBehaviorFallback = CopyBehavior::none;
constexpr auto trayDurationFallback = TrayDuration::sixtySeconds;
constexpr auto trayPositionFallback = TrayPosition::bottomRight;

QString copyBehaviorKey()
{
    return QStringLiteral("copyBehavior");
}

QString trayDurationKey()
{
    return QStringLiteral("trayDuration");
}

QString trayPositionKey()
{
    return QStringLiteral("trayPosition");
}

/// Removes the lock of a writer that was killed before it had written its name into it. Such a lock
/// would make everybody wait for half a minute.
void removeAbandonedLock(const QString &storePath)
{
    const QByteArray path = QFile::encodeName(QString(storePath + QStringLiteral(".lock")));
    const int lock = ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (lock < 0)
        return;
    struct stat status = {};
    const bool isNameless =
        ::fstat(lock, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0;
    // Who lives holds it in this way too.
    if (isNameless && ::flock(lock, LOCK_EX | LOCK_NB) == 0)
        ::unlink(path.constData());
    ::close(lock);
}

template <typename Option>
Option read(const QString &key, Option fallback)
{
    const QString stored = VelmoraSettings::open().value(key).toString();
    const auto &cases = optionCases<Option>();
    const auto match = std::find_if(cases.begin(), cases.end(), [&stored](const auto &entry) {
        return entry.rawValue == stored;
    });
    return match == cases.end() ? fallback : match->option;
}

template <typename Option>
void write(const QString &key, Option option)
{
    const auto &cases = optionCases<Option>();
    const auto match = std::find_if(cases.begin(), cases.end(),
                                    [option](const auto &entry) { return entry.option == option; });
    VelmoraSettings::open().setValue(key, match->rawValue);
}

template <typename Option>
Option optionAt(int index, Option fallback)
{
    const auto &cases = optionCases<Option>();
    return index >= 0 && index < cases.size() ? cases[index].option : fallback;
}

} // namespace

template <>
const QList<OptionCase<CopyBehavior>> &optionCases<CopyBehavior>()
{
    static const QList<OptionCase<CopyBehavior>> cases = {
        {CopyBehavior::none, QStringLiteral("none"), QStringLiteral("Do nothing")},
        {CopyBehavior::image, QStringLiteral("image"), QStringLiteral("Copy picture")},
        {CopyBehavior::file, QStringLiteral("file"), QStringLiteral("Copy file")},
        {CopyBehavior::imageAndFile, QStringLiteral("imageAndFile"),
         QStringLiteral("Copy picture + file")},
    };
    return cases;
}

template <>
const QList<OptionCase<TrayDuration>> &optionCases<TrayDuration>()
{
    static const QList<OptionCase<TrayDuration>> cases = {
        {TrayDuration::fifteenSeconds, QStringLiteral("fifteenSeconds"),
         QStringLiteral("15 seconds")},
        {TrayDuration::sixtySeconds, QStringLiteral("sixtySeconds"), QStringLiteral("60 seconds")},
        {TrayDuration::untilDismissed, QStringLiteral("untilDismissed"),
         QStringLiteral("Until dismissed")},
    };
    return cases;
}

template <>
const QList<OptionCase<TrayPosition>> &optionCases<TrayPosition>()
{
    static const QList<OptionCase<TrayPosition>> cases = {
        {TrayPosition::bottomRight, QStringLiteral("bottomRight"), QStringLiteral("Bottom-right")},
        {TrayPosition::topRight, QStringLiteral("topRight"), QStringLiteral("Top-right")},
        {TrayPosition::bottomLeft, QStringLiteral("bottomLeft"), QStringLiteral("Bottom-left")},
        {TrayPosition::topLeft, QStringLiteral("topLeft"), QStringLiteral("Top-left")},
    };
    return cases;
}

namespace VelmoraSettings
{

QSettings open()
{
    const auto openStore = [] {
        return QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("velmora"),
                         QStringLiteral("velmora"));
    };
    static const QString path = openStore().fileName();
    removeAbandonedLock(path);
    return openStore();
}

CopyBehavior copyBehavior()
{
    return read(copyBehaviorKey(), copyBehaviorFallback);
}

void setCopyBehavior(CopyBehavior behavior)
{
    write(copyBehaviorKey(), behavior);
}

TrayDuration trayDuration()
{
    return read(trayDurationKey(), trayDurationFallback);
}

void setTrayDuration(TrayDuration duration)
{
    write(trayDurationKey(), duration);
}

TrayPosition trayPosition()
{
    return read(trayPositionKey(), trayPositionFallback);
}

void setTrayPosition(TrayPosition position)
{
    write(trayPositionKey(), position);
}

CopyBehavior copyBehaviorAt(int index)
{
    return optionAt(index, copyBehaviorFallback);
}

TrayDuration trayDurationAt(int index)
{
    return optionAt(index, trayDurationFallback);
}

TrayPosition trayPositionAt(int index)
{
    return optionAt(index, trayPositionFallback);
}

} // namespace VelmoraSettings
