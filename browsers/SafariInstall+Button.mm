#include "browsers/SafariExtensions.h"
#include "browsers/SafariInstall.h"
#include "browsers/SafariPreferences.h"
#include "logging/NSLogger.h"

namespace {

// NO when the registry cannot be read.
BOOL RemoveFromRegistry() {
    @autoreleasepool {
        NSData* registry = ReadSafariRegistry();
        if (registry == nil) {
            [NSLogger LogFailure:@"missing Extensions.plist"];  // meant: its own wording
            return NO;
        }
        NSError* error = nil;
        if (!RemoveFromSafariRegistry(kSafariButtonArchive, registry, &error)) {
            [NSLogger LogFailure:@"Fail to copy files: %@", [error description]];
        }
        return YES;
    }
}

void RemoveFromToolbar() {
    @autoreleasepool {
        NSMutableDictionary* preferences = [SafariInstall comAppleSafariPlist];
        RemoveSafariToolbarItem(preferences);
        [SafariInstall writeDictToComAppleSafariPlist:preferences];
    }
}

}  // namespace

@implementation SafariInstall (Button)

+ (void)uninstallSafariButton {
    [SafariInstall removeSafariButtonFiles];
    [SafariInstall cleanSafariExtensionCache:kSafariButtonKind];
    if (RemoveFromRegistry()) {
        RemoveFromToolbar();
    }
}

+ (void)removeSafariButtonFiles {
    NSFileManager* files = [NSFileManager defaultManager];
    NSString* path = SafariButtonPath();
    NSError* error = nil;
    if (![files fileExistsAtPath:path]) {
        [NSLogger LogInformation:@"Can't delete, file not present %@", path];
    } else if (![files removeItemAtPath:path error:&error]) {
        [NSLogger LogWarning:@"Error deleting file: %@", [error description]];
    }
}

@end
