// SPDX-License-Identifier: MIT
#include "platform/LoginItem.h"

#import <ServiceManagement/ServiceManagement.h>

namespace
{

class MainApplicationLoginItem : public LoginItem
{
public:
    bool isEnabled() const override
    {
        return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
    }

    std::optional<QString> setEnabled(bool enabled) override
    {
        SMAppService *service = SMAppService.mainAppService;
        NSError *error = nil;
        const BOOL done = enabled ? [service registerAndReturnError:&error]
                                  : [service unregisterAndReturnError:&error];
        if (done)
            return std::nullopt;
        return QString::fromNSString(error.description);
    }
};

} // namespace

std::unique_ptr<LoginItem> makeLoginItem()
{
    return std::make_unique<MainApplicationLoginItem>();
}
