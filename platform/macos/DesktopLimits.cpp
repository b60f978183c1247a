// SPDX-License-Identifier: MIT
#include "platform/DesktopLimits.h"

namespace
{

/// There is only one desktop here, and it offers all that the program needs.
class NoDesktopLimits : public DesktopLimits
{
public:
    QList<DesktopLimit> missing() const override { return {}; }
};

} // namespace

std::unique_ptr<DesktopLimits> makeDesktopLimits()
{
    return std::make_unique<NoDesktopLimits>();
}
