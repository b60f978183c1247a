// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// How results are written.
enum class OutputFormat {
    Lines, ///< for people: one line a picture, fields parted by tabs, control characters escaped
    Null,  ///< every field ends with a zero byte
    Json,  ///< one object a line
};

/// What a command line asks for.
struct CommandOptions {
    enum class Mode {
        Name, ///< names, printed or given
        Text, ///< the text of pictures
        Undo, ///< the last renames taken back
        Find, ///< the pictures that hold words
    };

    Mode mode = Mode::Name;
    bool rename = false; ///< not only print the names
    bool all = false;    ///< files with names of their own too
    OutputFormat format = OutputFormat::Lines;
    QString appName;
    /// Files and folders, as bytes; "-" is standard input. The words, where they are to be found.
    std::vector<QByteArray> places;
};

/// Either what to do, or that there is nothing more to do than to end with this status.
struct CommandLine {
    std::optional<CommandOptions> options;
    int status = 0;
};

/// Reads the command line. Help, the version and what is wrong have been printed when this returns.
CommandLine parseCommandLine(int argc, char **argv);
