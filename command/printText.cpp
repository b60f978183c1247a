// SPDX-License-Identifier: MIT
#include "command/readPictures.h"
#include "command/runs.h"

#include <utility>

int Runs::text(const CommandOptions &options, Console &console)
{
    Report report(console, options.format);
    PictureReader reader(PictureReader::Wanted::Lines, {});
    WorkList list = WorkList::of(options);
    const bool isOneFile = options.places.size() == 1 && list.pictures.size() == 1 &&
                           list.pictures.front() == options.places.front();
    const auto paths = isOneFile ? Report::Paths::Hidden : Report::Paths::Shown;
    return readPictures(
        std::move(list), reader, console, report, [&](const PictureReading &reading) {
            return report.text(reading.path, reading.lines, paths) ? Going::On : Going::EndsAfter;
        });
}
