// Notifications between programs. GNUstep starts a daemon for them as soon as a program asks for
// the workspace, and the daemon outlives it. Nobody here sends or expects any: there is no centre.
#include <Foundation/Foundation.h>

@implementation NSDistributedNotificationCenter (NoDaemon)

+ (NSNotificationCenter*)mac_defaultCenter {
    return nil;
}

@end
