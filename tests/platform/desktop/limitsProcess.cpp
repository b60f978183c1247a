// SPDX-License-Identifier: MIT
/// Prints "free" if windows can't choose their position on the desktop that this runs on, "placed"
/// if the tray can be in its corner.

#include "platform/DesktopLimits.h"
#include "platform/prepareProcess.h"

#include <QGuiApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    prepareProcess();
    const QGuiApplication application(argc, argv);
    const bool isMissing = makeDesktopLimits()->missing().contains(DesktopLimit::TrayPlace);
    std::puts(isMissing ? "free" : "placed");
    return 0;
}
