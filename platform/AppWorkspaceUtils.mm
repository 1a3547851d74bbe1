#include "platform/AppWorkspaceUtils.h"

#include <AppKit/AppKit.h>

@implementation AppWorkspaceUtils

+ (BOOL)IsAppRunning:(NSString*)bundleIdentifier {
    if (bundleIdentifier == nil) {
        return NO;
    }
    for (NSRunningApplication* app in [[NSWorkspace sharedWorkspace] runningApplications]) {
        if ([[app bundleIdentifier] isEqualToString:bundleIdentifier] &&
            [app isFinishedLaunching]) {
            return YES;
        }
    }
    return NO;
}

@end
