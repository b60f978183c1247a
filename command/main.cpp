// SPDX-License-Identifier: MIT
#include "command/CommandOptions.h"
#include "command/Console.h"
#include "command/exitStatus.h"
#include "command/runs.h"

#include <QCoreApplication>

namespace
{

/// Standard error is for the command's own messages only.
void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(dropMessage);
    const CommandLine line = parseCommandLine(argc, argv);
    if (!line.options)
        return line.status;
    // The thread that creates the application object owns the image plugins. Without this object,
    // that would be the first thread that reads a picture, and the plugins would outlive it.
    int arguments = 1;
    const QCoreApplication application(arguments, argv);
    Console console;
    switch (line.options->mode) {
    case CommandOptions::Mode::Name:
        return Runs::name(*line.options, console);
    case CommandOptions::Mode::Text:
        return Runs::text(*line.options, console);
    case CommandOptions::Mode::Undo:
        return Runs::undo(*line.options, console);
    case CommandOptions::Mode::Find:
        return Runs::find(*line.options, console);
    }
    return ExitStatus::wrongUse;
}
