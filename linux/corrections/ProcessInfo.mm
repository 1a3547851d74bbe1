// A Mac tells its version from a file of the system; GNUstep tells the kernel's release, which is
// the answer here only where there is no such file.
#include <Foundation/Foundation.h>
#include <sys/utsname.h>

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
    utsname kernel{};
    uname(&kernel);
    return [NSString stringWithUTF8String:kernel.release];
}

@end
