#include "browsers/BrowserLookup.h"

UInt32 FindBrowser(NSString* bundleIdentifier, NSURL** url) {
    *url = nil;
    CFURLRef found = NULL;
    const OSStatus status =
        LSFindApplicationForInfo(0, (CFStringRef)bundleIdentifier, NULL, NULL, &found);
    if (status == noErr) {
        *url = [(NSURL*)found autorelease];
    }
    return static_cast<UInt32>(status);
}
