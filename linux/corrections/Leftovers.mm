// What GNUstep would leave behind, of which a Mac's program leaves nothing.
#include <AppKit/AppKit.h>

// User defaults: it looks for its own ones as soon as anybody asks for the time zone or prints a
// number, and makes a folder for them in the home. It gets a place where no folder can be made.
extern "C" NSString* GSDefaultsRootForUser(NSString* /*user*/) {
    return @"/dev/null/Defaults";
}

// Notifications between programs: it starts a daemon for them, which outlives the program. Nobody
// here sends or expects any: there is no centre.
@implementation NSDistributedNotificationCenter (NoDaemon)

+ (NSNotificationCenter*)mac_defaultCenter {
    return nil;
}

@end

// The workspace: it would wait for that daemon and leave files of its own.
@implementation NSWorkspace (LightStart)

- (id)mac_init {
    return self;
}

@end
