// SPDX-License-Identifier: MIT
#pragma once

class LoginItem;

/// Start at login.
namespace LoginItemController
{

/// Makes the system start the program when the user signs in, or not. Nothing is done where that
/// is already so. A failure is logged and not told. Main thread.
void setEnabled(LoginItem &item, bool enabled);

} // namespace LoginItemController
