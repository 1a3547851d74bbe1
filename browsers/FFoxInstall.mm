#include "browsers/FFoxInstall.h"

#include "browsers/BrowserLookup.h"
#include "browsers/FFoxInstall+LegacyCleanup.h"
#include "browsers/Payload.h"
#include "logging/NSLogger.h"
#include "platform/AppWorkspaceUtils.h"
#include "platform/FileModes.h"
#include "product/Addresses.h"
#include "product/Applications.h"
#include "product/Extensions.h"

namespace {

NSString* const kBundleIdentifier = @KS_FIREFOX_IDENTIFIER;
NSString* const kProgramNames[] = {@"firefox-bin", @"firefox", @"aurora", @"nightly"};

// In an Application Support folder. The last part is Firefox's identifier as an application.
NSString* const kApplicationFolder = @"/Mozilla/Extensions/{ec8030f7-c20a-464f-9b0e-13a3a9e97384}";
NSString* const kProfilesFolder = @"/Firefox/Profiles/";

NSString* const kHostFolder = @"~/Library/Application Support/Mozilla/NativeMessagingHosts/";
NSString* const kHostManifest = @"/" KS_FIREFOX_HOST_MANIFEST;

NSString* const kRegistry = @"extensions.rdf";
NSString* const kTypesFolder = @"js-ctypes";

NSString* ApplicationSupportFolder(NSSearchPathDomainMask domain) {
    return [NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory, domain, YES)
        objectAtIndex:0];
}

NSString* ApplicationFolder(NSSearchPathDomainMask domain) {
    return [ApplicationSupportFolder(domain) stringByAppendingString:kApplicationFolder];
}

// The computer's first.
NSArray* ApplicationFolders() {
    return [NSArray arrayWithObjects:ApplicationFolder(NSLocalDomainMask),
                                     ApplicationFolder(NSUserDomainMask), nil];
}

NSString* InstalledHostManifest() {
    return
        [[kHostFolder stringByExpandingTildeInPath] stringByAppendingPathComponent:kHostManifest];
}

NSString* PayloadHostManifest() {
    return [kExtensionsFolder stringByAppendingPathComponent:kHostManifest];
}

// The steps of the removal.

void RemoveButton(NSString* folder) {
    NSFileManager* files = [NSFileManager defaultManager];
    NSString* path = [folder stringByAppendingPathComponent:@KS_FIREFOX_BUTTON_IDENTIFIER];
    if (![files fileExistsAtPath:path]) {
        [NSLogger LogInformation:@"File at: %@, not present", path];
        return;
    }
    NSError* error = nil;
    if (![files removeItemAtPath:path error:&error]) {
        [NSLogger LogInformation:@"%@", [error description]];
    }
}

// The error slot belongs to the caller's whole pass over one folder, and nothing clears it in
// between. Meant: after a removal that succeeds, an earlier error of the same pass is reported
// again.

void RemoveExtension(NSString* path, NSString* shownPath, NSError** slot) {
    NSFileManager* files = [NSFileManager defaultManager];
    if (![files fileExistsAtPath:path]) {
        [NSLogger LogInformation:@"Can't delete. File not present %@", shownPath];
        return;
    }
    [files removeItemAtPath:path error:slot];
    if (*slot != nil) {
        [NSLogger LogFailure:@" Error uninstalling FFox extension: %@", [*slot description]];
    }
}

void RemoveFolder(NSString* folder, NSError** slot) {
    [[NSFileManager defaultManager] removeItemAtPath:folder error:slot];
    if (*slot != nil) {
        [NSLogger
            LogInformation:@"Error deleting FFox extension directory: %@", [*slot description]];
    }
}

void RemoveMainExtensions(NSString* folder) {
    NSString* mainPath = [folder stringByAppendingPathComponent:@KS_FIREFOX_MAIN_IDENTIFIER];
    NSString* shortPath = [folder stringByAppendingPathComponent:@KS_FIREFOX_SHORT_IDENTIFIER];
    NSError* slot = nil;
    RemoveExtension(mainPath, mainPath, &slot);
    RemoveExtension(shortPath, mainPath, &slot);  // meant: the line shows the first path again
    RemoveFolder(folder, &slot);
}

void RemoveTypes(NSString* folder) {
    NSString* path = [folder stringByAppendingPathComponent:kTypesFolder];
    NSError* slot = nil;
    RemoveExtension(path, path, &slot);
    RemoveFolder(folder, &slot);  // meant: it is gone by now
}

void CleanProfile(NSString* profile) {
    NSArray* identifiers =
        [NSArray arrayWithObjects:@KS_FIREFOX_BUTTON_IDENTIFIER, @KS_FIREFOX_SHORT_IDENTIFIER,
                                  @KS_FIREFOX_MAIN_IDENTIFIER, nil];
    [FFoxInstall removeExtensions:identifiers
                      fromRdfFile:[profile stringByAppendingPathComponent:kRegistry]];
    [FFoxInstall clearFFoxCache:profile];
}

}  // namespace

@implementation FFoxInstall

+ (BOOL)IsBrowserInstalled {
    return IsBrowserRegistered(kBundleIdentifier, @"Firefox application not found!");
}

+ (BOOL)IsBrowserStarted {
    for (NSString* name : kProgramNames) {
        if ([AppWorkspaceUtils IsAppRunning:name]) {  // meant: asked by name
            return YES;
        }
    }
    return NO;
}

+ (BOOL)IsExtensionInstalled {
    return [FFoxInstall IsBrowserInstalled] &&
           [[NSFileManager defaultManager] fileExistsAtPath:InstalledHostManifest()];
}

+ (BOOL)InstallExtension {
    if (![FFoxInstall IsBrowserInstalled]) {
        return YES;
    }
    [FFoxInstall UninstallExtension];
    NSError* error = nil;
    if (!CreateOpenFolder(ApplicationFolder(NSUserDomainMask), &error)) {
        [NSLogger LogFailure:@"Error installing FFox: %@", [error description]];
    }
    CreateOpenFolder([kHostFolder stringByExpandingTildeInPath], NULL);
    NSError* copyError = nil;
    const BOOL copied = [[NSFileManager defaultManager] copyItemAtPath:PayloadHostManifest()
                                                                toPath:InstalledHostManifest()
                                                                 error:&copyError];
    // Meant: the page is opened whatever the copy gave.
    [[[[AppWorkspaceUtils alloc] init] autorelease] OpenURL:@KS_FIREFOX_PRIVACY_PAGE
                                                withBrowser:kBrowserFirefox];
    if (!copied) {
        [NSLogger LogFailure:@"Error installing FFox: %@", [copyError description]];
    }
    return copied;
}

+ (BOOL)UninstallExtension {
    NSArray* folders = ApplicationFolders();
    for (NSString* folder in folders) {
        RemoveButton(folder);
    }
    for (NSString* folder in folders) {
        RemoveMainExtensions(folder);
    }
    for (NSString* folder in folders) {
        RemoveTypes(folder);
    }
    [[NSFileManager defaultManager] removeItemAtPath:InstalledHostManifest() error:NULL];
    for (NSString* profile in [FFoxInstall ffoxProfiles]) {
        // There may be many: each gives back what it took.
        @autoreleasepool {
            CleanProfile(profile);
        }
    }
    return YES;
}

+ (NSArray*)ffoxProfiles {
    NSString* folder =
        [ApplicationSupportFolder(NSUserDomainMask) stringByAppendingString:kProfilesFolder];
    NSArray* names = [[NSFileManager defaultManager] contentsOfDirectoryAtPath:folder error:NULL];
    NSMutableArray* profiles = [NSMutableArray arrayWithCapacity:[names count]];
    for (NSString* name in names) {
        [profiles addObject:[folder stringByAppendingPathComponent:name]];
    }
    return profiles;
}

@end
