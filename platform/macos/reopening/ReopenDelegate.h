// SPDX-License-Identifier: MIT
#pragma once

#import <AppKit/AppKit.h>

/// The notification that the user has opened the program again, for instance by its icon in the
/// Dock. Posted on the main thread.
extern NSNotificationName const velmoraReopened;

/// Hears that the user has opened the program again. Made the application's delegate before Qt
/// makes its application object: Qt then puts its own delegate in front and passes on to this one
/// what it finds implemented here.
///
/// Qt's own answer to the same event is a change of the application's state to active, which also
/// comes each time that the user merely turns to the program, so nothing can be told from it.
@interface VelmoraReopenDelegate : NSObject <NSApplicationDelegate>
@end
