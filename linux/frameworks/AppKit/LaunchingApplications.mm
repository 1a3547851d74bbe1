// Applications in Apple's layout are launched by starting the bundle's program, detached and quiet,
// as a Mac's launch services do; GNUstep looks for bundles of its own layout.
#include <AppKit/AppKit.h>
#include <CoreServices/CoreServices.h>

#include "linux/corrections/FileSystemPath.h"
#include "linux/corrections/Programs.h"
#include "linux/frameworks/CoreServices/ApplicationBundle.h"

namespace {

BOOL Launch(NSString* bundlePath, const Words& arguments) {
    std::string program;
    return FileSystemPath(ApplicationProgram(bundlePath), program) &&
           StartDetached(program, arguments, Output::Nowhere) == 0;
}

NSString* PathOfApplication(NSString* bundleIdentifier) {
    CFURLRef url = NULL;
    if (LSFindApplicationForInfo(0, (CFStringRef)bundleIdentifier, NULL, NULL, &url) != noErr) {
        return nil;
    }
    return [[(NSURL*)url autorelease] path];
}

}  // namespace

@implementation NSWorkspace (LaunchingApplications)

// Only full paths; a Mac knows applications by their names, too.
- (BOOL)mac_launchApplication:(NSString*)path {
    return Launch(path, {});
}

// The addresses are the program's arguments. The options ask for what happens anyway: nothing is
// waited for.
- (BOOL)mac_openURLs:(NSArray*)urls
           withAppBundleIdentifier:(NSString*)bundleIdentifier
                           options:(NSWorkspaceLaunchOptions)options
    additionalEventParamDescriptor:(NSAppleEventDescriptor*)descriptor
                 launchIdentifiers:(NSArray**)identifiers {
    Words addresses;
    for (NSURL* url in urls) {
        addresses.push_back([[url absoluteString] UTF8String]);
    }
    return Launch(PathOfApplication(bundleIdentifier), addresses);
}

@end
