// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/FileTransfer.h"

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// One frame at 60 Hz.
constexpr auto longestWait = 16ms;

bool isKnown(const FileTransferPortal::Transfer &transfer, std::chrono::milliseconds wait)
{
    return transfer.key.wait_for(wait) == std::future_status::ready;
}

} // namespace

FileTransfer::FileTransfer(FileTransferPortal &portal, const QUrl &file)
    : m_portal(&portal), m_file(file)
{
    connect(&portal, &FileTransferPortal::changed, this, &FileTransfer::startAgain);
    startAgain();
}

FileTransfer::~FileTransfer()
{
    stop();
}

QStringList FileTransfer::formats()
{
    // The second one is the older name, which some programs still ask for.
    return {u"application/vnd.portal.filetransfer"_s, u"application/vnd.portal.files"_s};
}

bool FileTransfer::isOffered() const
{
    if (!m_portal || !m_transfer)
        return false;
    return !isKnown(*m_transfer, 0ms) || !m_transfer->key.get().isEmpty();
}

QByteArray FileTransfer::key() const
{
    if (!isOffered() || !isKnown(*m_transfer, longestWait))
        return {};
    return m_transfer->key.get().toLatin1();
}

void FileTransfer::setFile(const QUrl &file)
{
    if (file == std::exchange(m_file, file))
        return;
    startAgain();
}

void FileTransfer::startAgain()
{
    stop();
    if (m_portal && m_portal->isRunning())
        m_transfer = m_portal->start(m_file);
}

void FileTransfer::stop()
{
    if (m_portal && m_transfer)
        m_portal->stop(m_transfer);
    m_transfer.reset();
}
