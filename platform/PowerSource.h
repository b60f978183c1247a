// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

/// Where the computer's power comes from. Any thread; some batteries take a moment to answer.
class PowerSource
{
public:
    virtual ~PowerSource() = default;

    /// How full the battery is that the computer runs on, from 0 to 100; nothing while it is
    /// plugged in, where there is no battery, and where nobody knows.
    virtual std::optional<int> batteryInUse() = 0;
};

std::unique_ptr<PowerSource> makePowerSource();
