#include "core/VelmoraLog.h"

#include "core/VelmoraTimestamp.h"

#include <QByteArray>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int safeFlags = O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

bool isRegularFile(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// Appends, or creates the file. Two opens, since one with O_CREAT is refused for another user's
/// file in a sticky folder even where appending is allowed; and once more where somebody else has
/// created the file in between.
int openLog(const char *path)
{
    int descriptor = ::open(path, safeFlags | O_APPEND);
    if (descriptor < 0 && errno == ENOENT)
        descriptor = ::open(path, safeFlags | O_APPEND | O_CREAT | O_EXCL, ownerOnly);
    if (descriptor < 0 && errno == EEXIST)
        descriptor = ::open(path, safeFlags | O_APPEND);
    return descriptor;
}

} // namespace

void VelmoraLog::write(const QString &message)
{
    append(QStringLiteral("/tmp/Velmora.log"), message);
}

void VelmoraLog::append(const QString &path, const QString &message)
{
    const QByteArray line =
        QString(velmoraTimestamp() + QLatin1Char(' ') + message + QLatin1Char('\n')).toUtf8();
    const int descriptor = openLog(QFile::encodeName(path).constData());
    if (descriptor < 0)
        return;
    if (isRegularFile(descriptor)) {
        [[maybe_unused]] const ssize_t written =
            ::write(descriptor, line.constData(), static_cast<size_t>(line.size()));
    }
    ::close(descriptor);
}
