// SPDX-License-Identifier: MIT
// Each line with a function has one mistake: the check must find all of them.
// clang-format off
#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>
#import <Vision/Vision.h>
#include <stdio.h>

void w01(NSPanel *p) { [p setFloatingPannel:YES]; } // a misspelt selector
void w02(NSPanel *p) { p.floatsPanel = YES; } // no such property
void w03(NSPasteboard *b, NSString *s) { [b writeObjects:s]; } // a string for an array
void w04(NSWorkspace *w, NSURL *u) { [w activateFileViewerSelectingURLs:u]; } // one URL for an array
void w05(NSWorkspace *w) { NSString *s = w.frontmostApplication; (void)s; } // an application as a string
void w06(NSFileManager *m, NSString *s) { NSError *e; [m trashItemAtURL:s resultingItemURL:nil error:&e]; } // a string for a URL
void w07(NSFileManager *m, NSURL *u) { NSError *e; [m trashItemAtURL:u resultingURL:nil error:&e]; } // a wrong piece
void w08(VNRecognizeTextRequest *r) { r.recognitionLevel = VNRequestTextRecognitionLevelBest; } // no such constant
void w09(VNRecognizeTextRequest *r) { r.recognitionLevel = 7; } // a number for an enumeration
void w10() { SMAppService *s = [SMAppService mainApp]; (void)s; } // the name in Swift
void w11(SMAppService *s) { [s registerWithError:nil]; } // a wrong selector
void w12(NSStatusBar *b) { NSMenuItem *i = [b statusItemWithLength:NSVariableStatusItemLength]; (void)i; } // a wrong class
void w13() { renamex_np("a", "b"); } // too few arguments
void w14() { renamex_np(@"a", "b", RENAME_EXCL); } // an object for a C string
void w15(VNImageRequestHandler *h, VNRequest *r) { [h performRequests:@[ r ] completion:nil]; } // a wrong piece
void w16(NSNotificationCenter *c) { [c addObserverForName:NSWorkspaceDidActivateApplicationNotification object:nil queue:nil usingBlock:^(NSString *n) {}]; } // a block of another type
void w17(NSWindow *w) { w.collectionBehavior = NSWindowCollectionBehaviorCanJoinEverySpace; } // no such constant
void w18(NSPanel *p) { p.level = @"x"; } // an object for a number
void w19() { NSPasteboard *b = [NSPasteboard generalBoard]; (void)b; } // no such class method
void w20(NSRunningApplication *a) { NSNumber *n = a.localizedName; (void)n; } // a string as a number
void w21(NSPasteboardItem *i) { [i setData:@"x" forType:NSPasteboardTypePNG]; } // a string for data
void w22(NSUserDefaults *d) { NSArray *a = [d stringForKey:@"x"]; (void)a; } // a string as an array
void w23(id<NSPasteboardWriting> w, NSPasteboard *b) { [b writeObject:w]; } // a wrong selector
void w24(VNRecognizedTextObservation *o) { VNRecognizedText *t = [o topCandidates:@1]; (void)t; } // an object for a number
void w25(NSFileManager *m) { [m removeItemAtPath:@"x" error:[NSError class]]; } // a class for an error
@interface P : NSObject <NSPasteboardItemDataProvider> @end @implementation P @end // a required method is missing
void w27(NSView *v) { [v.window setFrame:NSMakeRect(0, 0, 1, 1)]; } // half a selector
void w28(NSApplication *a) { [a setActivationPolicy:NSWindowStyleMaskTitled]; } // another enumeration
void w29(NSWorkspace *w, NSURL *u) { bool b = [w activateFileViewerSelectingURLs:@[ u ]]; (void)b; } // the use of no result
void w30(NSString *s) { const char *c = [s UTF8Strings]; (void)c; } // a misspelt selector
