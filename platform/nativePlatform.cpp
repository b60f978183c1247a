// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

Platform nativePlatform()
{
    return {
        .makeFolderEvents = makeFolderEvents,
        .desktopLimits = makeDesktopLimits(),
        .desktopRecords = makeDesktopRecords(),
        .desktopSearch = makeDesktopSearch(),
        .fileBrowser = makeFileBrowser(),
        .fileWriters = makeFileWriters(),
        .frontmostApplication = makeFrontmostApplication(),
        .loginItem = makeLoginItem(),
        .panelWindow = makePanelWindow(),
        .pasteboard = makePasteboard(),
        .powerSource = makePowerSource(),
        .runningInstance = makeRunningInstance(),
        .screenshotPreferences = makeScreenshotPreferences(),
        .statusItem = makeStatusItem(),
        .systemTrash = makeSystemTrash(),
        .textRecognizer = makeTextRecognizer(),
    };
}
