// A Mac tells its version from a file of the system; GNUstep tells the kernel's release, which is
// the answer here only where there is no such file.
#include <Foundation/Foundation.h>

namespace {

NSString* const kSystemVersionFile = @"/System/Library/CoreServices/SystemVersion.plist";

}  // namespace

@implementation NSProcessInfo (AppleVersion)

- (NSString*)mac_operatingSystemVersionString {
    NSDictionary* system = [NSDictionary dictionaryWithContentsOfFile:kSystemVersionFile];
    id version = [system objectForKey:@"ProductVersion"];
    id build = [system objectForKey:@"ProductBuildVersion"];
    if (version != nil && build != nil) {
        return [NSString stringWithFormat:@"Version %@ (Build %@)", version, build];
    }
    return [self mac_operatingSystemVersionString];
}

@end
