// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandOptions.h"

#include <QByteArray>

#include <vector>

/// The pictures that a command line refers to, in its order; those in a folder are sorted by name.
/// Each appears once.
struct WorkList {
    struct Failure {
        QByteArray path;
        QByteArray reason;
    };

    std::vector<QByteArray> pictures;
    qsizetype leftAlone = 0; ///< pictures that a person has named
    std::vector<Failure> failures;

    /// Reads the folders and, if requested, standard input. If names are wanted, takes only
    /// pictures with a name chosen by a tool, unless all are requested. If text is wanted, takes
    /// all.
    static WorkList of(const CommandOptions &options);
};
