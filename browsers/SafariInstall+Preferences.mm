#include "browsers/SafariExtensions.h"
#include "browsers/SafariInstall.h"
#include "browsers/SafariPreferences.h"
#include "logging/NSLogger.h"
#include "platform/PropertyLists.h"

namespace {

NSData* ReadPreferences() {
    return [NSData dataWithContentsOfFile:SafariPreferencesPath()];
}

}  // namespace

@implementation SafariInstall (Preferences)

+ (void)setFillPasswords:(BOOL)on {
    @autoreleasepool {
        NSData* data = ReadPreferences();
        if (data == nil) {
            [NSLogger LogWarning:@"Missing com.apple.Safari.plist"];
            return;
        }
        id root = ParsePropertyList(data, NSPropertyListMutableContainersAndLeaves, NULL);
        if ([root isKindOfClass:[NSMutableDictionary class]]) {
            SetSafariAutoFill(root, on);
        }
        NSError* error = nil;
        if (!WriteSafariFile(root, SafariPreferencesPath(), &error)) {
            [NSLogger LogInformation:@"%@", [error description]];
        }
    }
}

+ (NSMutableDictionary*)comAppleSafariPlist {
    NSData* data = ReadPreferences();
    if (data == nil) {
        [NSLogger LogFailure:@"Missing com.apple.Safari.plist"];
        return nil;
    }
    NSError* error = nil;
    id root = ParsePropertyList(data, NSPropertyListMutableContainersAndLeaves, &error);
    if (root == nil) {
        [NSLogger LogFailure:@"Error reading plist: %@", [error description]];
    }
    return [root isKindOfClass:[NSMutableDictionary class]] ? root : nil;
}

+ (BOOL)writeDictToComAppleSafariPlist:(NSDictionary*)dictionary {
    if (dictionary == nil) {
        return YES;
    }
    NSError* error = nil;
    NSData* data = EncodePropertyList(dictionary, NSPropertyListBinaryFormat_v1_0, &error);
    if (data == nil) {
        // Meant: "reading", of a write.
        [NSLogger LogFailure:@"Error reading plist: %@", [error description]];
        return NO;
    }
    if (![data writeToFile:SafariPreferencesPath() options:NSDataWritingAtomic error:&error]) {
        [NSLogger LogFailure:@"Error writing to file: %@", [error description]];
        return NO;
    }
    return YES;
}

@end
