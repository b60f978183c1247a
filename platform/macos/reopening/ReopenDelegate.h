// SPDX-License-Identifier: MIT
#pragma once

#import <AppKit/AppKit.h>

/// Posted when the user has opened the program again, for example by its icon in the Dock. On the
/// main thread.
extern NSNotificationName const velmoraReopened;

/// Learns that the user has opened the program again. It is the application's delegate before Qt
/// makes its application object: Qt then puts its own delegate in front and passes on to this one
/// what is implemented here.
///
/// Qt's own reaction to the same event is to change the application's state to active. The state
/// also changes whenever the user merely switches to the program, so it does not tell the two
/// apart.
@interface VelmoraReopenDelegate : NSObject <NSApplicationDelegate>
@end
