// SPDX-License-Identifier: MIT
#include "command/readPictures.h"

#include "command/Interruption.h"
#include "command/Progress.h"
#include "command/ReadingPool.h"
#include "command/exitStatus.h"

#include <atomic>
#include <optional>
#include <utility>

namespace
{

/// "1 picture is left", "2 pictures are left".
QByteArray sentence(qsizetype count, const char *one, const char *several)
{
    return QByteArray::number(count) + (count == 1 ? one : several);
}

} // namespace

int readPictures(WorkList list, PictureReader &reader, Console &console, Report &report,
                 const std::function<Going(const PictureReading &)> &handle)
{
    Interruption::expect();
    for (const WorkList::Failure &failure : list.failures)
        report.failure(failure.path, failure.reason);
    const auto total = qsizetype(list.pictures.size());
    qsizetype done = 0;
    std::atomic_bool ends = false;
    {
        Progress progress(console, total);
        ReadingPool pool(
            std::move(list.pictures), [&](const QByteArray &path) { return reader.read(path); },
            [&] { return ends || Interruption::signal() != 0; });
        while (!ends) {
            const std::optional<PictureReading> reading = pool.next([&] { progress.show(done); });
            if (!reading)
                break;
            Going going = Going::On;
            if (reading->failure.isEmpty())
                going = handle(*reading);
            else if (!report.failure(reading->path, reading->failure))
                going = Going::EndsAfter;
            ends = going != Going::On;
            done += going == Going::EndsBefore ? 0 : 1;
            progress.show(done);
        }
    }
    if (list.leftAlone > 0)
        report.note(sentence(list.leftAlone,
                             " picture was skipped: it already has a name of its own"
                             " (--all includes it)",
                             " pictures were skipped: they already have names of their own"
                             " (--all includes them)"));
    if (done < total)
        report.note(sentence(total - done, " picture is left", " pictures are left"));
    if (Interruption::signal() != 0)
        return ExitStatus::signalled + Interruption::signal();
    return ends || report.hasFailures() ? ExitStatus::someFailed : ExitStatus::done;
}
