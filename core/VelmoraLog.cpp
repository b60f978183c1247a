// SPDX-License-Identifier: MIT
#include "core/VelmoraLog.h"

#include "core/BackgroundThread.h"
#include "core/VelmoraTimestamp.h"

#include <QByteArray>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace
{

/// At program exit.
constexpr auto longestWaitAtExit = 1s;

/// While the disk does not answer, at most this many lines wait; later ones are lost.
constexpr size_t mostWaitingLines = 1000;

constexpr int safeFlags = O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

bool isRegularFile(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// Opens the file for appending, or creates it. Two opens are needed: in a sticky folder, O_CREAT
/// is refused for another user's file even where appending is allowed. A third one covers a file
/// that another process created in between.
int openLog(const char *path)
{
    int descriptor = ::open(path, safeFlags | O_APPEND);
    if (descriptor < 0 && errno == ENOENT)
        descriptor = ::open(path, safeFlags | O_APPEND | O_CREAT | O_EXCL, ownerOnly);
    if (descriptor < 0 && errno == EEXIST)
        descriptor = ::open(path, safeFlags | O_APPEND);
    return descriptor;
}

QByteArray lineOf(const QString &message)
{
    return QString(velmoraTimestamp() + u' ' + message + u'\n').toUtf8();
}

void appendLine(const QByteArray &path, const QByteArray &line)
{
    const int descriptor = openLog(path.constData());
    if (descriptor < 0)
        return;
    if (isRegularFile(descriptor)) {
        [[maybe_unused]] const ssize_t written =
            ::write(descriptor, line.constData(), static_cast<size_t>(line.size()));
    }
    ::close(descriptor);
}

BackgroundThread &writer()
{
    // Never destroyed: an abandoned thread may still write to the log.
    static BackgroundThread &thread = *new BackgroundThread(0ms);
    struct WriteAtExit {
        ~WriteAtExit() { thread.waitForTasks(longestWaitAtExit); }
    };
    static const WriteAtExit writeAtExit;
    return thread;
}

} // namespace

void VelmoraLog::write(const QString &message)
{
    if (writer().tasksLeft() < mostWaitingLines)
        writer().run([line = lineOf(message)] { appendLine("/tmp/Velmora.log", line); });
}

bool VelmoraLog::waitUntilWritten(std::chrono::milliseconds longestWait)
{
    return writer().waitForTasks(longestWait);
}

void VelmoraLog::append(const QString &path, const QString &message)
{
    appendLine(QFile::encodeName(path), lineOf(message));
}
