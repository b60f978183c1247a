// SPDX-License-Identifier: MIT
#include "platform/ScreenshotPreferences.h"

#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

using namespace Qt::StringLiterals;

namespace
{

/// Made for each read, to see a value that another process has stored meanwhile.
NSUserDefaults *screenCaptureDomain()
{
    return [[NSUserDefaults alloc] initWithSuiteName:@"com.apple.screencapture"];
}

bool isBoolean(id value)
{
    return value && CFGetTypeID((__bridge CFTypeRef)value) == CFBooleanGetTypeID();
}

/// The system's own tool stores the value in the system's domain; then the process that has read
/// the old value is ended.
QList<SystemCommand> commandsToStore(const QStringList &keyAndValue)
{
    return {
        {u"/usr/bin/defaults"_s,
         QStringList{u"write"_s, u"com.apple.screencapture"_s} + keyAndValue},
        {u"/usr/bin/killall"_s, {u"SystemUIServer"_s}},
    };
}

class ScreenCapturePreferences : public ScreenshotPreferences
{
public:
    std::optional<QString> location() const override
    {
        NSString *stored = [screenCaptureDomain() stringForKey:@"location"];
        return stored ? std::optional(QString::fromNSString(stored)) : std::nullopt;
    }

    /// The system's tool has no folder other than "location".
    std::optional<QString> desktopToolFolder() const override { return std::nullopt; }

    std::optional<bool> showsThumbnail() const override
    {
        id stored = [screenCaptureDomain() objectForKey:@"show-thumbnail"];
        return isBoolean(stored) ? std::optional<bool>([stored boolValue]) : std::nullopt;
    }

    QList<SystemCommand> storeLocation(const QString &path) override
    {
        return commandsToStore({u"location"_s, path});
    }

    QList<SystemCommand> storeShowsThumbnail(bool shows) override
    {
        return commandsToStore({u"show-thumbnail"_s, u"-bool"_s, shows ? u"true"_s : u"false"_s});
    }
};

} // namespace

std::unique_ptr<ScreenshotPreferences> makeScreenshotPreferences()
{
    return std::make_unique<ScreenCapturePreferences>();
}
