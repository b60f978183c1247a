// SPDX-License-Identifier: MIT
#include "platform/linux/folder-events/MountTable.h"

#include <QList>
#include <QSocketNotifier>

#include <array>

#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr size_t bufferSize = 4096;

/// In a line of the table: the number of the mount, that of the one it is in, the device, the
/// folder of the device, the path. The kernel uses numbers again, so they alone tell nothing.
constexpr qsizetype pathField = 4;

QByteArray unescaped(QByteArray path)
{
    return path.replace("\\040", " ")
        .replace("\\011", "\t")
        .replace("\\012", "\n")
        .replace("\\134", "\\");
}

} // namespace

MountTable::MountTable() : m_table(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC))
{
    if (m_table < 0)
        return;
    auto *notifier = new QSocketNotifier(m_table, QSocketNotifier::Exception, this);
    connect(notifier, &QSocketNotifier::activated, this, &MountTable::changed);
}

MountTable::~MountTable()
{
    qDeleteAll(findChildren<QSocketNotifier *>());
    if (m_table >= 0)
        ::close(m_table);
}

MountTable::Mounts MountTable::read() const
{
    QByteArray text;
    std::array<char, bufferSize> buffer;
    ssize_t size = 0;
    while ((size = ::pread(m_table, buffer.data(), buffer.size(), text.size())) > 0)
        text.append(buffer.data(), size);
    Mounts mounts;
    for (const QByteArray &line : text.split('\n')) {
        const QByteArrayList fields = line.split(' ');
        if (fields.size() > pathField)
            mounts[unescaped(fields[pathField])].append(fields.first(pathField).join(' '));
    }
    return mounts;
}
