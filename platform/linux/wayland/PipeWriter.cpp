// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/PipeWriter.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>

namespace
{

constexpr std::chrono::seconds patience{30};

} // namespace

PipeWriter::PipeWriter(Descriptor pipe, QByteArray bytes, QObject *parent)
    : QObject(parent)
    , m_pipe(std::move(pipe))
    , m_bytes(std::move(bytes))
    , m_notifier(m_pipe.number(), QSocketNotifier::Write)
{
    // Otherwise a reader that is gone would end the program.
    std::signal(SIGPIPE, SIG_IGN);
    ::fcntl(m_pipe.number(), F_SETFL, O_NONBLOCK);
    connect(&m_notifier, &QSocketNotifier::activated, this, &PipeWriter::write);
    connect(&m_patience, &QTimer::timeout, this, &QObject::deleteLater);
    m_patience.start(patience);
}

void PipeWriter::write()
{
    const qsizetype left = m_bytes.size() - m_written;
    const ssize_t written = ::write(m_pipe.number(), m_bytes.constData() + m_written, size_t(left));
    if (written < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    m_written += std::max<ssize_t>(0, written);
    m_patience.start();
    if (written < 0 || m_written == m_bytes.size()) {
        m_notifier.setEnabled(false);
        m_patience.stop();
        deleteLater();
    }
}
