// SPDX-License-Identifier: MIT
#pragma once

class LoginItem;

/// Start at login.
namespace LoginItemController
{

/// Switches start at login on or off. Does nothing when it is already so. A failure is only logged.
/// Main thread.
void setEnabled(LoginItem &item, bool enabled);

} // namespace LoginItemController
