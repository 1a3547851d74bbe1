#include "ui/NSWindow+QWINSWindow.h"

// Meant: these take the place of the window's own.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSWindow (QWINSWindow)

- (BOOL)canBecomeKeyWindow {
    return YES;
}

- (BOOL)acceptsFirstResponder {
    return YES;
}

- (BOOL)becomeFirstResponder {
    return YES;
}

- (BOOL)resignFirstResponder {
    return YES;
}

@end
