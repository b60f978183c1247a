// SPDX-License-Identifier: MIT
// Calls that the system really has: the check must find nothing wrong here.
#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>
#import <Vision/Vision.h>
#include <copyfile.h>
#include <fcntl.h>
#include <sys/event.h>
#include <sys/stdio.h>

void panel(NSView *view)
{
    NSPanel *panel = [[NSPanel alloc]
        initWithContentRect:NSMakeRect(0, 0, 10, 10)
                  styleMask:NSWindowStyleMaskBorderless | NSWindowStyleMaskNonactivatingPanel
                    backing:NSBackingStoreBuffered
                      defer:NO];
    panel.floatingPanel = YES;
    panel.level = NSStatusWindowLevel;
    panel.hidesOnDeactivate = NO;
    panel.becomesKeyOnlyIfNeeded = YES;
    panel.collectionBehavior =
        NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorFullScreenAuxiliary;
    [panel orderFrontRegardless];
    if ([view.window isKindOfClass:[NSPanel class]])
        [static_cast<NSPanel *>(view.window) setFloatingPanel:YES];
    [NSApp setActivationPolicy:NSApplicationActivationPolicyRegular];
    NSApp.appearance = [NSAppearance appearanceNamed:NSAppearanceNameAqua];
}

bool paste(NSData *png, NSURL *file)
{
    NSPasteboard *board = [NSPasteboard generalPasteboard];
    [board clearContents];
    NSPasteboardItem *item = [[NSPasteboardItem alloc] init];
    [item setData:png forType:NSPasteboardTypePNG];
    [item setString:file.absoluteString forType:NSPasteboardTypeFileURL];
    NSImage *image = [[NSImage alloc] initWithData:png];
    return [board writeObjects:@[ item, file, image ]];
}

void workspace(NSURL *file)
{
    NSWorkspace *workspace = NSWorkspace.sharedWorkspace;
    NSRunningApplication *front = workspace.frontmostApplication;
    NSLog(@"%@ %@ %d", front.localizedName, front.bundleIdentifier, front.processIdentifier);
    [workspace activateFileViewerSelectingURLs:@[ file ]];
    id token = [workspace.notificationCenter
        addObserverForName:NSWorkspaceDidActivateApplicationNotification
                    object:nil
                     queue:NSOperationQueue.mainQueue
                usingBlock:^(NSNotification *note) {
                  NSRunningApplication *application = note.userInfo[NSWorkspaceApplicationKey];
                  NSLog(@"%@", application.localizedName);
                }];
    [workspace.notificationCenter removeObserver:token];
}

bool trash(NSURL *file)
{
    NSURL *location = nil;
    NSError *error = nil;
    if (![NSFileManager.defaultManager trashItemAtURL:file
                                     resultingItemURL:&location
                                                error:&error]) {
        NSLog(@"%@ %ld", error.domain, static_cast<long>(error.code));
        return error.domain == NSCocoaErrorDomain;
    }
    const char *from = location.fileSystemRepresentation;
    return copyfile(from, "/tmp/copy", nullptr, COPYFILE_ALL | COPYFILE_EXCL) == 0 &&
           renamex_np(from, file.fileSystemRepresentation, RENAME_EXCL) == 0;
}

void read(NSData *data)
{
    VNRecognizeTextRequest *request = [[VNRecognizeTextRequest alloc]
        initWithCompletionHandler:^(VNRequest *performed, NSError *) {
          for (VNRecognizedTextObservation *observation in performed.results)
              NSLog(@"%@ %f", [observation topCandidates:1].firstObject,
                    observation.boundingBox.origin.y);
        }];
    request.recognitionLevel = VNRequestTextRecognitionLevelAccurate;
    request.usesLanguageCorrection = YES;
    request.recognitionLanguages = @[ @"en-US" ];
    VNImageRequestHandler *handler = [[VNImageRequestHandler alloc] initWithData:data options:@{}];
    NSError *error = nil;
    [handler performRequests:@[ request ] error:&error];
}

bool login(bool on)
{
    NSError *error = nil;
    SMAppService *service = SMAppService.mainAppService;
    const BOOL ok =
        on ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error];
    return ok && service.status == SMAppServiceStatusEnabled;
}

NSStatusItem *item()
{
    NSStatusItem *item =
        [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
    item.button.title = @"3";
    item.button.image = [NSImage imageWithSystemSymbolName:@"camera" accessibilityDescription:nil];
    item.menu = [[NSMenu alloc] initWithTitle:@""];
    return item;
}

int watch(const char *path)
{
    const int descriptor = open(path, O_EVTONLY | O_CLOEXEC);
    dispatch_queue_t queue = dispatch_queue_create("x", DISPATCH_QUEUE_SERIAL);
    dispatch_source_t source =
        dispatch_source_create(DISPATCH_SOURCE_TYPE_VNODE, static_cast<uintptr_t>(descriptor),
                               DISPATCH_VNODE_WRITE, queue);
    dispatch_source_set_event_handler(source, ^{
      NSLog(@"changed");
    });
    dispatch_resume(source);
    return kqueue();
}

NSString *defaults()
{
    NSUserDefaults *domain = [[NSUserDefaults alloc] initWithSuiteName:@"com.apple.screencapture"];
    return [[domain stringForKey:@"location"] stringByExpandingTildeInPath];
}
