// SPDX-License-Identifier: MIT
#pragma once

#include "platform/LoginItem.h"

/// A setting in memory that can be made to fail.
class FakeLoginItem : public LoginItem
{
public:
    bool isEnabled() const override { return enabled; }
    std::optional<QString> setEnabled(bool on) override
    {
        ++calls;
        if (!failure)
            enabled = on;
        return failure;
    }

    bool enabled = false;
    int calls = 0;
    std::optional<QString> failure;
};
