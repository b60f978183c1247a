// SPDX-License-Identifier: MIT
// What the check does not find: these compile, and are checked by hand (docs/macos.md).
// clang-format off
#import <AppKit/AppKit.h>
#import <Vision/Vision.h>

void u1(NSWorkspace *w) { [w activateFileViewerSelectingURLs:@[ @"no url" ]]; } // what an array holds
void u2() { NSInteger x = NSBackingStoreTypeBuffered; (void)x; } // a constant that does not exist
void u3(NSPasteboard *b) { [b setString:@"x" forType:@"not.a.type"]; } // what a string says
void u4(NSFileManager *m) { [m trashItemAtURL:nil resultingItemURL:nil error:nil]; } // nil where none is allowed
void u5(NSPasteboard *b) { (void)b.accessBehavior; } // newer than macOS 13
void u6(NSWorkspace *w) { [w openFile:@"x"]; } // deprecated
void u7(NSArray<NSString *> *a) { NSURL *u = a.firstObject; (void)u; } // what comes out of an array
