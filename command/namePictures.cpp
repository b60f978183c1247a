// SPDX-License-Identifier: MIT
#include "command/IndexUpdate.h"
#include "command/Namer.h"
#include "command/exitStatus.h"
#include "command/readPictures.h"
#include "command/runs.h"
#include "filesystem/RenameJournal.h"

#include <memory>

namespace
{

int preview(const CommandOptions &options, Console &console, Report &report)
{
    PictureReader reader(PictureReader::Wanted::Words, options.appName);
    Preview namer(options.appName);
    return readPictures(WorkList::of(options), reader, console, report,
                        [&](const PictureReading &reading) {
                            const Naming naming = namer.name(reading);
                            return report.name(reading.path, naming.newPath, Report::Renamed::No)
                                       ? Going::On
                                       : Going::EndsAfter;
                        });
}

/// Reports the picture's result. Stops if renaming could no longer be recorded in the journal, or
/// no longer be reported.
Going rename(Renamer &renamer, const PictureReading &reading, Report &report, IndexUpdate &index)
{
    const Naming naming = renamer.name(reading);
    if (renamer.hasLostJournal()) {
        report.note("the journal can't be written, so no more files are renamed: " +
                    naming.failure);
        return Going::EndsBefore;
    }
    if (naming.newPath != reading.path)
        index.add(naming.newPath);
    const auto renamed =
        naming.newPath == reading.path ? Report::Renamed::No : Report::Renamed::Yes;
    const bool isTold = naming.failure.isEmpty()
                            ? report.name(reading.path, naming.newPath, renamed)
                            : report.failure(reading.path, "can't be renamed: " + naming.failure);
    return isTold ? Going::On : Going::EndsAfter;
}

int rename(const CommandOptions &options, Console &console, Report &report)
{
    std::error_code error;
    const std::unique_ptr<RenameJournal> journal = RenameJournal::begin(error);
    if (!journal) {
        report.note("the journal can't be written, so nothing is renamed: " +
                    QByteArray::fromStdString(error.message()));
        return ExitStatus::someFailed;
    }
    PictureReader reader(PictureReader::Wanted::Words, options.appName);
    Renamer renamer(options.appName, *journal);
    IndexUpdate index;
    return readPictures(
        WorkList::of(options), reader, console, report,
        [&](const PictureReading &reading) { return rename(renamer, reading, report, index); });
}

} // namespace

int Runs::name(const CommandOptions &options, Console &console)
{
    Report report(console, options.format);
    return options.rename ? rename(options, console, report) : preview(options, console, report);
}
