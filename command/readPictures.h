// SPDX-License-Identifier: MIT
#pragma once

#include "command/Console.h"
#include "command/PictureReader.h"
#include "command/Report.h"
#include "command/WorkList.h"

#include <functional>

/// Whether the next picture is wanted.
enum class Going {
    On,
    EndsAfter,  ///< this one was the last
    EndsBefore, ///< nothing was done with this one
};

/// Reads the pictures of the list, one a core, and hands over those that could be read in the order
/// of the list; the others are reported. Shows the progress. A signal, or a handler that is done,
/// ends it early; then it says how many are left. Returns the exit status.
int readPictures(WorkList list, PictureReader &reader, Console &console, Report &report,
                 const std::function<Going(const PictureReading &)> &handle);
