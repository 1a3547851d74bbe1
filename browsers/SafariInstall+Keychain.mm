#include <Security/Security.h>

#include "browsers/SafariExtensions.h"
#include "browsers/SafariInstall.h"
#include "logging/NSLogger.h"
#include "platform/PropertyLists.h"
#include "platform/ScopedHandles.h"
#include "platform/Utils_Mac.h"

namespace {

NSString* const kItemLabel = @"Safari Extensions List";

CFDictionaryRef ItemQuery() {
    return (CFDictionaryRef)[NSDictionary
        dictionaryWithObjectsAndKeys:(id)kSecClassGenericPassword, (id)kSecClass,
                                     (id)kCFBooleanTrue, (id)kSecReturnData, (id)kSecMatchLimitOne,
                                     (id)kSecMatchLimit, kItemLabel, (id)kSecAttrLabel, nil];
}

BOOL IsOurs(NSString* archive) {
    return [archive isEqual:kSafariExtensionArchive] || [archive isEqual:kSafariButtonArchive];
}

// Meant: at most one entry a call.
void RemoveFirstOfOurs(NSMutableDictionary* list) {
    NSArray* entries = [list objectForKey:kSafariInstalledExtensions];
    if (![entries isKindOfClass:[NSArray class]]) {
        return;
    }
    for (NSUInteger index = 0; index < [entries count]; ++index) {
        if (IsOurs(ArchiveName([entries objectAtIndex:index]))) {
            NSMutableArray* others = [NSMutableArray arrayWithArray:entries];
            [others removeObjectAtIndex:index];
            [list setObject:others forKey:kSafariInstalledExtensions];
            return;
        }
    }
}

}  // namespace

@implementation SafariInstall (Keychain)

+ (BOOL)uninstallSafariExtensionFromKeychain {
    @autoreleasepool {
        ScopedCFRef<CFTypeRef> data;
        if (SecItemCopyMatching(ItemQuery(), data.Out()) != errSecSuccess) {
            [NSLogger LogInformation:@"Extension already removed!"];
            return YES;
        }
        NSMutableDictionary* list = [NSMutableDictionary
            dictionaryWithDictionary:[Utils_Mac DictionaryWithContentsOfData:(NSData*)data.Get()]];
        RemoveFirstOfOurs(list);
        if ([list count] == 0) {
            return NO;
        }
        NSError* error = nil;
        NSData* changed = EncodePropertyList(list, NSPropertyListBinaryFormat_v1_0, &error);
        if (changed == nil) {
            [NSLogger LogFailure:@"Couldn't convert with error: %@!", [error description]];
            return NO;
        }
        SecItemUpdate(
            ItemQuery(),
            (CFDictionaryRef)[NSDictionary dictionaryWithObject:changed forKey:(id)kSecValueData]);
        return YES;
    }
}

@end
