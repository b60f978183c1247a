// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

/// The connection over which Qt shows the program's windows. Null when they are not shown on an X
/// server. Main thread.
xcb_connection_t *qtConnection();
