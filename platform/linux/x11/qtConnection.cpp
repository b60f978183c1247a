// SPDX-License-Identifier: MIT
#include "platform/linux/x11/qtConnection.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

/// Qt's offscreen plug-in provides the X11 interface as well, with no connection behind it.
xcb_connection_t *qtConnection()
{
    if (!qGuiApp || QGuiApplication::platformName() != u"xcb"_s)
        return nullptr;
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}
