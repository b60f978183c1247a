// SPDX-License-Identifier: MIT
#include "platform/linux/folder-events/InotifyQueue.h"

#include <QFile>

#include <array>
#include <cstring>

#include <sys/inotify.h>
#include <unistd.h>

namespace
{

constexpr uint32_t goneMask = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;
constexpr size_t bufferSize = 65536;

/// The most reads in a row, so that a burst of events does not keep the thread from its other work.
constexpr int readsInARow = 16;

void take(const inotify_event &event, const char *name, InotifyQueue::News &news)
{
    if (event.mask & goneMask) {
        news.folderGone = true;
        return;
    }
    // An event without a name is about the folder itself, or the queue has overflowed.
    const QByteArray raw(event.len > 0 ? name : "");
    const QString decoded = QFile::decodeName(raw);
    if (raw.isEmpty() || QFile::encodeName(decoded) != raw)
        news.lost = true;
    else
        news.names.insert(decoded);
}

void takeAll(const char *begin, const char *end, InotifyQueue::News &news)
{
    while (begin < end) {
        inotify_event event;
        std::memcpy(&event, begin, sizeof event);
        begin += sizeof event;
        take(event, begin, news);
        begin += event.len;
    }
}

} // namespace

InotifyQueue::~InotifyQueue()
{
    close();
}

bool InotifyQueue::open(const QByteArray &folder, uint32_t mask)
{
    close();
    m_descriptor = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_descriptor < 0)
        return false;
    const uint32_t onlyNamedEntries = IN_ONLYDIR | IN_EXCL_UNLINK;
    if (::inotify_add_watch(m_descriptor, folder.constData(), mask | onlyNamedEntries) < 0) {
        close();
        return false;
    }
    m_notifier = new QSocketNotifier(m_descriptor, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &InotifyQueue::readable);
    return true;
}

void InotifyQueue::close()
{
    if (m_notifier) {
        // This may be the notifier whose signal is being handled.
        m_notifier->setEnabled(false);
        m_notifier->deleteLater();
        m_notifier = nullptr;
    }
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

void InotifyQueue::setListening(bool listening)
{
    if (m_notifier)
        m_notifier->setEnabled(listening);
}

InotifyQueue::News InotifyQueue::read()
{
    News news;
    std::array<char, bufferSize> buffer;
    for (int i = 0; i < readsInARow && m_descriptor >= 0; ++i) {
        const ssize_t size = ::read(m_descriptor, buffer.data(), buffer.size());
        if (size <= 0)
            break;
        takeAll(buffer.data(), buffer.data() + size, news);
    }
    return news;
}
