// Asking for the workspace costs nothing on a Mac. GNUstep's starts a daemon for notifications
// between programs, waits for it, and leaves it and its files behind; what it would hear nobody
// here asks for.
#include <AppKit/AppKit.h>

@implementation NSWorkspace (LightStart)

- (id)mac_init {
    return self;
}

@end
