// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PowerSource.h"

#include <atomic>

/// No battery, or one with the charge that the test chooses.
class FakePowerSource : public PowerSource
{
public:
    std::optional<int> batteryInUse() override
    {
        ++asked;
        return level < 0 ? std::nullopt : std::optional(level.load());
    }

    std::atomic_int level = -1;
    std::atomic_int asked = 0;
};
