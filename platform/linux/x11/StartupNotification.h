// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace StartupNotification
{

/// Tells the desktop that the program launched under this id has started, so that it stops its
/// launch feedback. Does nothing unless the desktop shares an X server with this program. Main
/// thread.
void end(const QString &startupId);

} // namespace StartupNotification
