// SPDX-License-Identifier: MIT
#include "platform/SystemTrash.h"

#include "filesystem/moveFile.h"

#include <QString>

#import <Foundation/Foundation.h>

namespace
{

/// The errors of the system's file manager, with the system's own descriptions.
class CocoaErrors : public std::error_category
{
public:
    const char *name() const noexcept override { return "cocoa"; }

    std::string message(int code) const override
    {
        NSError *error = [NSError errorWithDomain:NSCocoaErrorDomain code:code userInfo:nil];
        return error.localizedDescription.UTF8String;
    }
};

std::error_code errorCode(NSError *error)
{
    static const CocoaErrors cocoaErrors;
    const int code = static_cast<int>(error.code);
    if ([error.domain isEqualToString:NSCocoaErrorDomain])
        return {code, cocoaErrors};
    if ([error.domain isEqualToString:NSPOSIXErrorDomain])
        return {code, std::generic_category()};
    return std::make_error_code(std::errc::io_error);
}

class FileManagerTrash : public SystemTrash
{
public:
    Trashed trash(const QUrl &file) override
    {
        NSURL *location = nil;
        NSError *error = nil;
        if (![NSFileManager.defaultManager trashItemAtURL:file.toNSURL()
                                         resultingItemURL:&location
                                                    error:&error])
            return {errorCode(error), std::nullopt};
        if (!location)
            return {{}, std::nullopt};
        return {{}, QUrl::fromNSURL(location)};
    }

    /// The trash keeps no record beside the file.
    std::error_code restore(const QUrl &trashed, const QUrl &original) override
    {
        return moveFile(trashed, original);
    }
};

} // namespace

std::unique_ptr<SystemTrash> makeSystemTrash()
{
    return std::make_unique<FileManagerTrash>();
}
