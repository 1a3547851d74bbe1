#include "ui/QWINSWindowController.h"

@implementation QWINSWindowController

- (void)centerWindowOnScreen {
    NSWindow* window = [self window];
    NSScreen* screen = [window screen];
    const NSSize windowSize = window ? [window frame].size : NSZeroSize;
    const NSSize screenSize = screen ? [screen frame].size : NSZeroSize;
    // Meant: the screen's own origin is not added.
    [window setFrameOrigin:NSMakePoint((screenSize.width - windowSize.width) / 2,
                                       (screenSize.height - windowSize.height) / 2)];
}

- (void)presentWindow {
    [NSApp activateIgnoringOtherApps:YES];
    [self centerWindowOnScreen];
    [[self window] makeKeyWindow];
    [[self window] orderFront:nil];
}

- (void)windowWillClose:(NSNotification*)notification {
    (void)notification;
}

@end
