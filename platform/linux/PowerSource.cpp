// SPDX-License-Identifier: MIT
#include "platform/PowerSource.h"

#include "platform/linux/power/PowerSupplies.h"

using namespace Qt::StringLiterals;

namespace
{

class KernelPowerSource : public PowerSource
{
public:
    std::optional<int> batteryInUse() override
    {
        return PowerSupplies::batteryInUse(u"/sys/class/power_supply"_s);
    }
};

} // namespace

std::unique_ptr<PowerSource> makePowerSource()
{
    return std::make_unique<KernelPowerSource>();
}
