// SPDX-License-Identifier: MIT
#include "platform/FileBrowser.h"

#include "filesystem/FileUrls.h"

#import <AppKit/AppKit.h>

namespace
{

class Finder : public FileBrowser
{
public:
    void reveal(const QUrl &file) override
    {
        // A file that is gone can't be selected.
        if (FileUrls::exists(file))
            [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ file.toNSURL() ]];
        else
            [NSWorkspace.sharedWorkspace openURL:FileUrls::parentFolder(file).toNSURL()];
    }
};

} // namespace

std::unique_ptr<FileBrowser> makeFileBrowser()
{
    return std::make_unique<Finder>();
}
