// SPDX-License-Identifier: MIT
#pragma once

#include "command/Console.h"
#include "command/PictureReader.h"
#include "command/Report.h"
#include "command/WorkList.h"

#include <functional>

/// Whether to go on with the next picture.
enum class Going {
    On,
    EndsAfter,  ///< this picture was the last
    EndsBefore, ///< this picture was not handled
};

/// Reads the pictures of the list, one per core. Passes those that could be read to `handle`, in
/// the order of the list, and reports the others. Shows the progress. A signal, or the result of
/// `handle`, ends it early; then it reports how many are left. Returns the exit status.
int readPictures(WorkList list, PictureReader &reader, Console &console, Report &report,
                 const std::function<Going(const PictureReading &)> &handle);
