// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// The format of the results.
enum class OutputFormat {
    Lines, ///< for people: one line per picture, tab-separated, control characters escaped
    Null,  ///< every field ends with a zero byte
    Json,  ///< one object per line
};

/// What the command line requests.
struct CommandOptions {
    enum class Mode {
        Name, ///< print names, or rename files
        Text, ///< print the text of pictures
        Undo, ///< undo the last renames
        Find, ///< print the pictures that contain words
    };

    Mode mode = Mode::Name;
    bool rename = false; ///< rename the files, not just print the names
    bool all = false;    ///< also files that a person has named
    OutputFormat format = OutputFormat::Lines;
    QString appName;
    /// Files and folders, as bytes; "-" is standard input. For Mode::Find, the words.
    std::vector<QByteArray> places;
};

/// Either the options, or no options and the exit status with which the command ends at once.
struct CommandLine {
    std::optional<CommandOptions> options;
    int status = 0;
};

/// Parses the command line. Help, the version and errors have already been printed when this
/// returns.
CommandLine parseCommandLine(int argc, char **argv);
