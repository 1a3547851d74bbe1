// The default encoding of C strings is Mac Roman, as on the Mac of a Western user. GNUstep itself
// takes the same default for the names of files, which are UTF-8 on every Mac: it goes on being
// told so.
#include <Foundation/Foundation.h>
#include <dlfcn.h>

#include <cstring>

@implementation NSString (MacEncoding)

+ (NSStringEncoding)mac_defaultCStringEncoding {
    Dl_info caller;
    const bool isGNUstep = dladdr(__builtin_return_address(0), &caller) != 0 &&
                           std::strstr(caller.dli_fname, "/libgnustep-") != nullptr;
    return isGNUstep ? NSUTF8StringEncoding : NSMacOSRomanStringEncoding;
}

@end
