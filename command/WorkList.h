// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandOptions.h"

#include <QByteArray>

#include <vector>

/// The pictures that a command line speaks of, in its order; those of a folder by name. Each once.
struct WorkList {
    struct Failure {
        QByteArray path;
        QByteArray reason;
    };

    std::vector<QByteArray> pictures;
    qsizetype leftAlone = 0; ///< have names of their own
    std::vector<Failure> failures;

    /// Reads the folders, and standard input where it is asked for. Only text is wanted of all
    /// pictures; names are given to those that have the name of a tool, unless all are asked for.
    static WorkList of(const CommandOptions &options);
};
