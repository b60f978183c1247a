// SPDX-License-Identifier: MIT
// A single-instance program. Prints the signals that it receives.

#include "platform/RunningInstance.h"

#include <QGuiApplication>

#include <cstdio>

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
    const auto instance = makeRunningInstance();
    QObject::connect(instance.get(), &RunningInstance::reopened, instance.get(), [] {
        say(QStringLiteral("reopened ") + qEnvironmentVariable("XDG_ACTIVATION_TOKEN"));
    });
    QObject::connect(instance.get(), &RunningInstance::actionRequested, instance.get(),
                     [](const QString &name) { say(QStringLiteral("action ") + name); });
    if (!instance->claim()) {
        say(QStringLiteral("another runs"));
        return 0;
    }
    say(QStringLiteral("runs"));
    return application.exec();
}
