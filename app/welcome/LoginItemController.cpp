// SPDX-License-Identifier: MIT
#include "app/welcome/LoginItemController.h"

#include "core/VelmoraLog.h"
#include "platform/LoginItem.h"

using namespace Qt::StringLiterals;

void LoginItemController::setEnabled(LoginItem &item, bool enabled)
{
    if (item.isEnabled() == enabled)
        return;
    if (const std::optional<QString> failure = item.setEnabled(enabled))
        VelmoraLog::write(u"login item failed "_s + *failure);
}
