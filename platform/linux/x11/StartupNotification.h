// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace StartupNotification
{

/// Tells the desktop that what the user launched under this id is there, so that it stops showing
/// him that it is coming. Only where the desktop shares an X server with this program; elsewhere
/// nothing happens. Main thread.
void end(const QString &startupId);

} // namespace StartupNotification
