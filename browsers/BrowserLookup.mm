#include "browsers/BrowserLookup.h"

#include "logging/NSLogger.h"
#include "platform/ScopedHandles.h"

UInt32 FindBrowser(NSString* bundleIdentifier, NSURL** url) {
    *url = nil;
    ScopedCFRef<CFURLRef> found;
    const OSStatus status =
        LSFindApplicationForInfo(0, (CFStringRef)bundleIdentifier, NULL, NULL, found.Out());
    if (status == noErr) {
        *url = [[(NSURL*)found.Get() retain] autorelease];
    }
    return static_cast<UInt32>(status);
}

BOOL IsBrowserRegistered(NSString* bundleIdentifier, NSString* notFound) {
    NSURL* url = nil;
    const UInt32 status = FindBrowser(bundleIdentifier, &url);
    if (status == noErr) {
        [NSLogger LogInformation:@"Application URL is: %@", url];
        return YES;
    }
    if (status == kBrowserNotFound) {
        [NSLogger LogInformation:@"%@", notFound];
    } else {
        // Meant: logged unsigned.
        [NSLogger LogWarning:@"An error occurred: %ld", static_cast<long>(status)];
    }
    return NO;
}
