// SPDX-License-Identifier: MIT
#include "tests/imaging/PeakMemory.h"

#include "core/releaseFreeMemory.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace
{

qint64 statusBytes(const char *key)
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QFile::ReadOnly))
        return -1;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(QByteArrayView(key).size())
                       .simplified()
                       .split(' ')
                       .first()
                       .toLongLong() *
                   1024;
    }
    return -1;
}

} // namespace

qint64 PeakMemory::startCounting()
{
    releaseFreeMemory();
    QFile file(u"/proc/self/clear_refs"_s);
    constexpr char resetPeak[] = "5";
    if (!file.open(QFile::WriteOnly | QFile::Unbuffered) || file.write(resetPeak) != 1)
        return -1;
    return statusBytes("VmRSS:");
}

qint64 PeakMemory::most()
{
    return statusBytes("VmHWM:");
}

bool PeakMemory::isMeasurable()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return false;
#else
    return true;
#endif
}
