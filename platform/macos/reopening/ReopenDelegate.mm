// SPDX-License-Identifier: MIT
#include "platform/macos/reopening/ReopenDelegate.h"

NSNotificationName const velmoraReopened = @"app.velmora.Velmora.reopened";

@implementation VelmoraReopenDelegate

- (BOOL)applicationShouldHandleReopen:(NSApplication *)sender hasVisibleWindows:(BOOL)hasVisible
{
    (void)sender;
    (void)hasVisible;
    [NSNotificationCenter.defaultCenter postNotificationName:velmoraReopened object:nil];
    return YES;
}

@end
