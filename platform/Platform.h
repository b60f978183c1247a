// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DesktopLimits.h"
#include "platform/DesktopRecords.h"
#include "platform/DesktopSearch.h"
#include "platform/FileBrowser.h"
#include "platform/FileWriters.h"
#include "platform/FolderEvents.h"
#include "platform/FrontmostApplication.h"
#include "platform/LoginItem.h"
#include "platform/PanelWindow.h"
#include "platform/Pasteboard.h"
#include "platform/PowerSource.h"
#include "platform/RunningInstance.h"
#include "platform/ScreenshotPreferences.h"
#include "platform/StatusItem.h"
#include "platform/SystemTrash.h"
#include "platform/TextRecognizer.h"

#include <functional>
#include <memory>

/// All services of the operating system. No member is ever null.
struct Platform {
    /// Each watcher makes one of its own, on its own thread.
    std::function<std::unique_ptr<FolderEvents>()> makeFolderEvents;
    std::unique_ptr<DesktopLimits> desktopLimits;
    std::unique_ptr<DesktopRecords> desktopRecords;
    std::unique_ptr<DesktopSearch> desktopSearch;
    std::unique_ptr<FileBrowser> fileBrowser;
    std::unique_ptr<FileWriters> fileWriters;
    std::unique_ptr<FrontmostApplication> frontmostApplication;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<PanelWindow> panelWindow;
    std::unique_ptr<Pasteboard> pasteboard;
    std::shared_ptr<PowerSource> powerSource; ///< also held by threads that are abandoned
    std::unique_ptr<RunningInstance> runningInstance;
    std::unique_ptr<ScreenshotPreferences> screenshotPreferences;
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<SystemTrash> systemTrash;
    std::shared_ptr<TextRecognizer> textRecognizer; ///< likewise
};

/// The services of the system that the program was built for. Needs the application object.
Platform nativePlatform();
