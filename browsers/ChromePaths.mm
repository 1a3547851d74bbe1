#include "browsers/ChromePaths.h"

#include "browsers/Payload.h"

namespace {

NSString* const kPayloadSubfolder = @"/chrome";
NSString* const kSystemHostFolder = @"/Library/Google/Chrome/NativeMessagingHosts";
NSString* const kSystemExternalFolder =
    @"/Library/Application Support/Google/Chrome/External Extensions/";
NSString* const kUserExternalFolder =
    @"~/Library/Application Support/Google/Chrome/External Extensions/";
NSString* const kPlugInFolder = @"Internet Plug-Ins";
NSString* const kPlugIn = @KS_CHROME_PLUG_IN;
NSString* const kPreferences = @"~/Library/Application Support/Google/Chrome/Default/Preferences";

}  // namespace

NSString* ChromePayload(NSString* name) {
    return [[kExtensionsFolder stringByAppendingPathComponent:kPayloadSubfolder]
        stringByAppendingPathComponent:name];
}

NSString* ChromeUserExternalFolder() {
    return [kUserExternalFolder stringByExpandingTildeInPath];
}

NSString* ChromeUserExternal(NSString* name) {
    return [ChromeUserExternalFolder() stringByAppendingPathComponent:name];
}

NSString* ChromeSystemExternal(NSString* name) {
    return [kSystemExternalFolder stringByAppendingPathComponent:name];
}

NSString* ChromePayloadHostManifest() {
    return ChromePayload(kChromiumHostManifest);
}

NSString* ChromeInstalledHostManifest() {
    return [kSystemHostFolder stringByAppendingPathComponent:kChromiumHostManifest];
}

NSString* ChromePreferences() {
    return [kPreferences stringByExpandingTildeInPath];
}

NSString* ChromeUserPlugIn() {
    NSArray* libraries =
        NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, YES);
    NSString* library = [libraries count] == 0 ? @"" : [libraries objectAtIndex:0];
    return [[library stringByAppendingPathComponent:kPlugInFolder]
        stringByAppendingPathComponent:kPlugIn];
}
