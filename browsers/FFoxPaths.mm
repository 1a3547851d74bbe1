#include "browsers/FFoxPaths.h"

#include "browsers/Payload.h"

namespace {

// In an Application Support folder. The last part is Firefox's identifier as an application.
NSString* const kApplicationFolder = @"/Mozilla/Extensions/{ec8030f7-c20a-464f-9b0e-13a3a9e97384}";
NSString* const kProfilesFolder = @"/Firefox/Profiles/";

NSString* const kHostFolder = @"~/Library/Application Support/Mozilla/NativeMessagingHosts/";
NSString* const kHostManifest = @"/" KS_FIREFOX_HOST_MANIFEST;

NSString* ApplicationSupportFolder(NSSearchPathDomainMask domain) {
    return [NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory, domain, YES)
        objectAtIndex:0];
}

NSString* ApplicationFolder(NSSearchPathDomainMask domain) {
    return [ApplicationSupportFolder(domain) stringByAppendingString:kApplicationFolder];
}

}  // namespace

NSArray* FFoxApplicationFolders() {
    return [NSArray
        arrayWithObjects:ApplicationFolder(NSLocalDomainMask), FFoxUserApplicationFolder(), nil];
}

NSString* FFoxUserApplicationFolder() {
    return ApplicationFolder(NSUserDomainMask);
}

NSString* FFoxProfilesFolder() {
    return [ApplicationSupportFolder(NSUserDomainMask) stringByAppendingString:kProfilesFolder];
}

NSString* FFoxHostFolder() {
    return [kHostFolder stringByExpandingTildeInPath];
}

NSString* FFoxInstalledHostManifest() {
    return [FFoxHostFolder() stringByAppendingPathComponent:kHostManifest];
}

NSString* FFoxPayloadHostManifest() {
    return [kExtensionsFolder stringByAppendingPathComponent:kHostManifest];
}
