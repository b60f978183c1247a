// SPDX-License-Identifier: MIT
#include "command/CommandOptions.h"

#include "command/exitStatus.h"
#include "command/usage.h"

#include <QSet>

#include <cstdio>
#include <getopt.h>

namespace
{

using Mode = CommandOptions::Mode;

enum : int {
    Null = '0',
    App = 256,
    All,
    Rename,
    Undo,
    Text,
    Find,
    Json,
    Help,
    Version,
    Unknown = '?'
};

constexpr option knownOptions[] = {
    {"app", required_argument, nullptr, App},
    {"all", no_argument, nullptr, All},
    {"rename", no_argument, nullptr, Rename},
    {"undo", no_argument, nullptr, Undo},
    {"text", no_argument, nullptr, Text},
    {"find", no_argument, nullptr, Find},
    {"json", no_argument, nullptr, Json},
    {"null", no_argument, nullptr, Null},
    {"help", no_argument, nullptr, Help},
    {"version", no_argument, nullptr, Version},
    {nullptr, 0, nullptr, 0},
};

/// The options that were given.
using Given = QSet<int>;

CommandLine wrongUse()
{
    std::fputs("Try 'velmora-name --help'.\n", stderr);
    return {std::nullopt, ExitStatus::wrongUse};
}

/// What is wrong with the command line; null if nothing is.
const char *complaint(const Given &given, bool hasPlaces)
{
    if (given.contains(Json) && given.contains(Null))
        return "--json and -0 cannot be combined";
    if (given.contains(Find)) {
        if (given.intersects({App, All, Rename, Text, Undo}))
            return "--find can only be combined with --json or -0";
        return hasPlaces ? nullptr : "--find needs a word to find";
    }
    if (given.contains(Undo)) {
        if (given.intersects({App, All, Rename, Text}))
            return "--undo can only be combined with --json or -0";
        return hasPlaces ? "--undo takes no files: it undoes the whole last run" : nullptr;
    }
    if (given.contains(Text) && given.intersects({App, Rename}))
        return "--text cannot be combined with --app or --rename";
    return hasPlaces ? nullptr : "no file or folder given";
}

Mode modeOf(const Given &given)
{
    if (given.contains(Undo))
        return Mode::Undo;
    if (given.contains(Find))
        return Mode::Find;
    return given.contains(Text) ? Mode::Text : Mode::Name;
}

OutputFormat formatOf(const Given &given)
{
    if (given.contains(Json))
        return OutputFormat::Json;
    return given.contains(Null) ? OutputFormat::Null : OutputFormat::Lines;
}

} // namespace

CommandLine parseCommandLine(int argc, char **argv)
{
    CommandOptions options;
    Given given;
    // getopt_long() puts this before its messages.
    static char ownName[] = "velmora-name";
    argv[0] = ownName;
    for (int found = 0; (found = ::getopt_long(argc, argv, "0", knownOptions, nullptr)) != -1;) {
        if (found == Unknown)
            return wrongUse();
        if (found == Help || found == Version) {
            std::fputs(found == Help ? usageText : "velmora-name " VELMORA_VERSION "\n", stdout);
            return {std::nullopt, ExitStatus::done};
        }
        if (found == App)
            options.appName = QString::fromUtf8(optarg);
        given.insert(found);
    }
    options.places.assign(argv + optind, argv + argc);
    if (const char *const message = complaint(given, !options.places.empty())) {
        std::fprintf(stderr, "velmora-name: %s\n", message);
        return wrongUse();
    }
    options.mode = modeOf(given);
    options.rename = given.contains(Rename);
    options.all = given.contains(All);
    options.format = formatOf(given);
    return {options, ExitStatus::done};
}
