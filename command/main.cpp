// SPDX-License-Identifier: MIT
#include "command/CommandOptions.h"
#include "command/Console.h"
#include "command/exitStatus.h"
#include "command/runs.h"

#include <QtGlobal>

namespace
{

/// Standard error is for what the command itself has to say.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(dropMessage);
    const CommandLine line = parseCommandLine(argc, argv);
    if (!line.options)
        return line.status;
    Console console;
    switch (line.options->mode) {
    case CommandOptions::Mode::Name:
        return Runs::name(*line.options, console);
    case CommandOptions::Mode::Text:
        return Runs::text(*line.options, console);
    case CommandOptions::Mode::Undo:
        return Runs::undo(*line.options, console);
    }
    return ExitStatus::wrongUse;
}
