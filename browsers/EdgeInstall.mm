#include "browsers/EdgeInstall.h"

#include "browsers/BrowserLookup.h"
#include "browsers/ExternalExtension.h"
#include "browsers/Payload.h"
#include "logging/NSLogger.h"
#include "platform/AppWorkspaceUtils.h"
#include "platform/FileModes.h"
#include "product/Addresses.h"
#include "product/Applications.h"
#include "product/Extensions.h"

namespace {

NSString* const kBundleIdentifier = @KS_EDGE_IDENTIFIER;
NSString* const kApplicationName = @KS_EDGE_NAME;

NSString* const kPayloadSubfolder = @"/edge";
NSString* const kDescriptorName = @KS_EDGE_DESCRIPTOR;
NSString* const kHostFolder = @"~/Library/Application Support/Microsoft Edge/NativeMessagingHosts";
NSString* const kExternalFolder =
    @"~/Library/Application Support/Microsoft Edge/External Extensions";

NSString* HostFolder() {
    return [kHostFolder stringByExpandingTildeInPath];
}

NSString* ExternalFolder() {
    return [kExternalFolder stringByExpandingTildeInPath];
}

NSString* InstalledHostManifest() {
    return [NSString stringWithFormat:@"%@%@", HostFolder(), kChromiumHostManifest];
}

NSString* InstalledDescriptor() {
    return [NSString stringWithFormat:@"%@/%@", ExternalFolder(), kDescriptorName];
}

NSString* PayloadHostManifest() {
    return [NSString
        stringWithFormat:@"%@%@%@", kExtensionsFolder, kPayloadSubfolder, kChromiumHostManifest];
}

NSString* PayloadDescriptor() {
    return [NSString
        stringWithFormat:@"%@%@/%@", kExtensionsFolder, kPayloadSubfolder, kDescriptorName];
}

// The steps of the installation; each says whether the next one may follow.

BOOL EnsureFolder(NSString* folder, NSString* failure) {
    NSError* error = nil;
    if (![[NSFileManager defaultManager] fileExistsAtPath:folder] &&
        !CreateOpenFolder(folder, &error)) {
        [NSLogger LogFailure:failure, [error description]];
        return NO;
    }
    return YES;
}

BOOL Copy(NSString* source, NSString* target, NSString* failure) {
    NSError* error = nil;
    if (![[NSFileManager defaultManager] copyItemAtPath:source toPath:target error:&error]) {
        [NSLogger LogFailure:failure, [error description]];
        return NO;
    }
    return YES;
}

}  // namespace

@implementation EdgeInstall

+ (BOOL)IsBrowserInstalled {
    return IsBrowserRegistered(kBundleIdentifier, @"Edge application not found!");
}

+ (BOOL)IsBrowserStarted {
    return [AppWorkspaceUtils IsAppRunning:kApplicationName];  // meant: asked by name
}

+ (BOOL)IsExtensionInstalled {
    if (![EdgeInstall IsBrowserInstalled]) {
        return NO;
    }
    NSFileManager* files = [NSFileManager defaultManager];
    return [files fileExistsAtPath:InstalledHostManifest()] &&
           [files fileExistsAtPath:InstalledDescriptor()];
}

+ (BOOL)InstallExtension {
    if (![EdgeInstall IsBrowserInstalled]) {
        return YES;
    }
    [EdgeInstall UninstallExtension];
    if (!EnsureFolder(HostFolder(), @"Error creating Edge Native directory: %@") ||
        !Copy(PayloadHostManifest(), InstalledHostManifest(), @"Error copying Edge JSON: %@") ||
        !WriteExternalExtension(PayloadDescriptor(), @KS_EDGE_UPDATE_URL) ||  // meant: not logged
        !EnsureFolder(ExternalFolder(), @"Error creating Edge External directory: %@") ||
        !Copy(PayloadDescriptor(), InstalledDescriptor(), @"Error copying Edge created JSON: %@")) {
        return NO;
    }
    [NSLogger LogSuccess:@"Edge extension installed!"];
    return YES;
}

+ (BOOL)UninstallExtension {
    NSFileManager* files = [NSFileManager defaultManager];
    [files removeItemAtPath:InstalledHostManifest() error:NULL];
    [files removeItemAtPath:InstalledDescriptor() error:NULL];
    [NSLogger LogSuccess:@"Edge extension uninstalled!"];
    return YES;
}

@end
