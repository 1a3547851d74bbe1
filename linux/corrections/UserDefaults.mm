// The program keeps no user defaults. GNUstep looks for its own ones as soon as anybody asks for
// the time zone or prints a number, and makes a folder for them in the home: it gets a place where
// no folder can be made, so that none are read or written.
#include <Foundation/Foundation.h>

extern "C" NSString* GSDefaultsRootForUser(NSString* /*user*/) {
    return @"/dev/null/Defaults";
}
