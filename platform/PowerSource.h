// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

/// Where the computer's power comes from. Any thread; some batteries take a moment to answer.
class PowerSource
{
public:
    virtual ~PowerSource() = default;

    /// The charge of the battery in use, from 0 to 100; nothing while the computer is plugged in,
    /// when it has no battery, and when it is unknown.
    virtual std::optional<int> batteryInUse() = 0;
};

std::unique_ptr<PowerSource> makePowerSource();
