// SPDX-License-Identifier: MIT
#include "command/Console.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{

constexpr int usualWidth = 80;

bool writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count =
            ::write(descriptor, bytes.constData() + written, size_t(bytes.size() - written));
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            written += count;
    }
    return true;
}

} // namespace

Console::Console()
    : m_errors(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
    , m_isTerminal(::isatty(STDERR_FILENO) == 1)
    , m_outputShares(m_isTerminal && ::isatty(STDOUT_FILENO) == 1)
{
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere >= 0) {
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
}

Console::~Console()
{
    setStatusLine({});
    ::close(m_errors);
}

bool Console::print(const QByteArray &bytes)
{
    if (m_outputShares)
        eraseStatusLine();
    m_outputFails = m_outputFails || !writeAll(STDOUT_FILENO, bytes);
    if (m_outputShares)
        drawStatusLine();
    return !m_outputFails;
}

void Console::complain(const QByteArray &text)
{
    eraseStatusLine();
    writeAll(m_errors, "velmora-name: " + text + '\n');
    drawStatusLine();
}

void Console::setStatusLine(const QByteArray &text)
{
    if (!m_isTerminal || text == m_statusLine)
        return;
    eraseStatusLine();
    m_statusLine = text;
    drawStatusLine();
}

int Console::width() const
{
    struct winsize size = {};
    return ::ioctl(m_errors, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usualWidth;
}

void Console::eraseStatusLine()
{
    if (!m_statusLine.isEmpty())
        writeAll(m_errors, "\r\x1b[K");
}

void Console::drawStatusLine()
{
    if (!m_statusLine.isEmpty())
        writeAll(m_errors, m_statusLine);
}
