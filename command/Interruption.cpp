// SPDX-License-Identifier: MIT
#include "command/Interruption.h"

#include <atomic>
#include <csignal>

namespace
{

std::atomic_int received = 0;
static_assert(std::atomic_int::is_always_lock_free, "a signal handler may not wait");

void remember(int signal)
{
    received = signal;
}

} // namespace

void Interruption::expect()
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction former = {};
        ::sigaction(signal, nullptr, &former);
        if (former.sa_handler == SIG_IGN)
            continue;
        struct sigaction action = {};
        action.sa_handler = remember;
        action.sa_flags = SA_RESTART | int(SA_RESETHAND);
        ::sigaction(signal, &action, nullptr);
    }
}

int Interruption::signal()
{
    return received;
}
