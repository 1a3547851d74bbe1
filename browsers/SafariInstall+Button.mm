#include "browsers/SafariExtensions.h"
#include "browsers/SafariInstall.h"
#include "logging/NSLogger.h"

namespace {

NSString* const kArchivesFolder = @"Safari/Extensions";
NSString* const kToolbar = @"NSToolbar Configuration BrowserWindowToolbarIdentifier";
NSString* const kToolbarItems = @"TB Item Identifiers";
NSString* const kButtonItem = @KS_SAFARI_BUTTON_ITEM;

NSString* ButtonPath() {
    return [[UserLibrary() stringByAppendingPathComponent:kArchivesFolder]
        stringByAppendingPathComponent:kSafariButtonArchive];
}

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

void RemoveToolbarItem(NSDictionary* preferences) {
    id toolbar = [preferences objectForKey:kToolbar];
    if (![toolbar isKindOfClass:[NSDictionary class]]) {
        return;
    }
    id items = [toolbar objectForKey:kToolbarItems];
    if ([items isKindOfClass:[NSMutableArray class]]) {
        [items removeObject:kButtonItem];
    }
}

void RemoveFromToolbar() {
    @autoreleasepool {
        NSMutableDictionary* preferences = [SafariInstall comAppleSafariPlist];
        RemoveToolbarItem(preferences);
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
    NSString* path = ButtonPath();
    NSError* error = nil;
    if (![files fileExistsAtPath:path]) {
        [NSLogger LogInformation:@"Can't delete, file not present %@", path];
    } else if (![files removeItemAtPath:path error:&error]) {
        [NSLogger LogWarning:@"Error deleting file: %@", [error description]];
    }
}

@end
