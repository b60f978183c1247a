// SPDX-License-Identifier: MIT
#include "platform/PowerSource.h"

#import <Foundation/Foundation.h>

namespace
{

/// The system tells every program whether to save power, which it does on a low battery. The exact
/// charge needs another framework.
class LowPowerModeSource : public PowerSource
{
public:
    std::optional<int> batteryInUse() override
    {
        constexpr int almostNothing = 1;
        return NSProcessInfo.processInfo.lowPowerModeEnabled ? std::optional(almostNothing)
                                                             : std::nullopt;
    }
};

} // namespace

std::unique_ptr<PowerSource> makePowerSource()
{
    return std::make_unique<LowPowerModeSource>();
}
