// SPDX-License-Identifier: MIT
// A single-instance program. Prints the signals that it receives. After a line on its standard
// input it is no longer the instance, but keeps running.

#include "platform/RunningInstance.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

void say(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    auto instance = makeRunningInstance();
    QObject::connect(instance.get(), &RunningInstance::reopened, instance.get(),
                     [] { say(u"reopened "_s + qEnvironmentVariable("XDG_ACTIVATION_TOKEN")); });
    QObject::connect(instance.get(), &RunningInstance::actionRequested, instance.get(),
                     [](const QString &name) { say(u"action "_s + name); });
    if (!instance->claim()) {
        say(u"another runs"_s);
        return 0;
    }
    say(u"runs"_s);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
        input.setEnabled(false);
        // Started by the bus, it has an empty input.
        if (std::getchar() == EOF)
            return;
        instance.reset();
        say(u"has left"_s);
    });
    return application.exec();
}
