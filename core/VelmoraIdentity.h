// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The program's identifier: its desktop entry, its name on the session bus, its icons.
inline QString velmoraBundleIdentifier()
{
    return QStringLiteral("app.velmora.Velmora");
}

/// Where the welcome window's feedback mail goes.
inline QString velmoraFeedbackAddress()
{
    return QStringLiteral("feedback@velmora.app");
}
