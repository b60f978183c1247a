// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// The computer's batteries and chargers, as the kernel lists them in a folder. Batteries of mice
/// and other devices do not count. Any thread; blocks.
namespace PowerSupplies
{

/// The average charge of the batteries, from 0 to 100, while one of them is discharging and nothing
/// is plugged in.
std::optional<int> batteryInUse(const QString &folder);

} // namespace PowerSupplies
