#include "browsers/EdgeInstall.h"

#include "browsers/BrowserLookup.h"
#include "browsers/EdgePaths.h"
#include "browsers/ExternalExtension.h"
#include "logging/NSLogger.h"
#include "platform/AppWorkspaceUtils.h"
#include "platform/FileModes.h"
#include "product/Addresses.h"
#include "product/Applications.h"

namespace {

NSString* const kBundleIdentifier = @KS_EDGE_IDENTIFIER;
NSString* const kApplicationName = @KS_EDGE_NAME;

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
    return [files fileExistsAtPath:EdgeInstalledHostManifest()] &&
           [files fileExistsAtPath:EdgeInstalledDescriptor()];
}

+ (BOOL)InstallExtension {
    if (![EdgeInstall IsBrowserInstalled]) {
        return YES;
    }
    [EdgeInstall UninstallExtension];
    if (!EnsureFolder(EdgeHostFolder(), @"Error creating Edge Native directory: %@") ||
        !Copy(EdgePayloadHostManifest(), EdgeInstalledHostManifest(),
              @"Error copying Edge JSON: %@") ||
        !WriteExternalExtension(EdgePayloadDescriptor(),
                                @KS_EDGE_UPDATE_URL) ||  // meant: not logged
        !EnsureFolder(EdgeExternalFolder(), @"Error creating Edge External directory: %@") ||
        !Copy(EdgePayloadDescriptor(), EdgeInstalledDescriptor(),
              @"Error copying Edge created JSON: %@")) {
        return NO;
    }
    [NSLogger LogSuccess:@"Edge extension installed!"];
    return YES;
}

+ (BOOL)UninstallExtension {
    NSFileManager* files = [NSFileManager defaultManager];
    [files removeItemAtPath:EdgeInstalledHostManifest() error:NULL];
    [files removeItemAtPath:EdgeInstalledDescriptor() error:NULL];
    [NSLogger LogSuccess:@"Edge extension uninstalled!"];
    return YES;
}

@end
