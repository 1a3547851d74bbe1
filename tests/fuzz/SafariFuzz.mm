// Any bytes as Safari's registry, preferences and keychain item: what the removal takes is gone,
// everything else is as it was.
#include <Security/Security.h>
#include <fuzzer/FuzzedDataProvider.h>

#include "browsers/SafariInstall.h"
#include "product/Extensions.h"
#include "tests/fuzz/Lists.h"
#include "tests/fuzz/Require.h"
#include "tests/support/Files.h"

namespace {

constexpr NSPropertyListFormat kFormat = NSPropertyListBinaryFormat_v1_0;

NSString* const kExtensions = @"Installed Extensions";
NSString* const kName = @"Archive File Name";
NSString* const kToolbar = @"NSToolbar Configuration BrowserWindowToolbarIdentifier";
NSString* const kItems = @"TB Item Identifiers";

NSData* keychainItem = nil;
std::string keychainUpdate;

std::string Path(NSString* path) {
    return [[path stringByExpandingTildeInPath] fileSystemRepresentation];
}

NSDictionary* With(NSDictionary* list, id member, NSString* key) {
    NSMutableDictionary* changed = [NSMutableDictionary dictionaryWithDictionary:list];
    [changed setObject:member forKey:key];
    return changed;
}

NSString* NameOf(id entry) {
    id name = [entry isKindOfClass:[NSDictionary class]] ? [entry objectForKey:kName] : nil;
    return [name isKindOfClass:[NSString class]] ? name : nil;
}

// The registry without the last entry of that name, and without what equals it.
NSDictionary* Removed(NSDictionary* registry, NSString* prefix) {
    NSArray* entries = ArrayIn(registry, kExtensions);
    id last = nil;
    for (id entry in entries) {
        last = [NameOf(entry) hasPrefix:prefix] ? entry : last;
    }
    NSMutableArray* others = [NSMutableArray array];
    for (id entry in entries) {
        if (entry != last && ![entry isEqual:last]) {
            [others addObject:entry];
        }
    }
    return last == nil ? registry : With(registry, others, kExtensions);
}

NSDictionary* WithoutButton(NSDictionary* preferences) {
    NSDictionary* toolbar = DictionaryIn(preferences, kToolbar);
    NSArray* items = ArrayIn(toolbar, kItems);
    NSMutableArray* others = [NSMutableArray array];
    for (id item in items) {
        if (![item isEqual:@KS_SAFARI_BUTTON_ITEM]) {
            [others addObject:item];
        }
    }
    return items == nil ? preferences : With(preferences, With(toolbar, others, kItems), kToolbar);
}

// The list without the first entry of ours.
NSDictionary* WithoutFirst(NSDictionary* list) {
    NSMutableArray* others = [NSMutableArray array];
    bool found = false;
    for (id entry in ArrayIn(list, kExtensions)) {
        NSString* name = NameOf(entry);
        const bool ours = !found && ([name isEqual:@KS_SAFARI_ARCHIVE] ||
                                     [name isEqual:@KS_SAFARI_BUTTON_ARCHIVE]);
        found = found || ours;
        if (!ours) {
            [others addObject:entry];
        }
    }
    return found ? With(list, others, kExtensions) : list;
}

// A file holds that list now; where there is no such list, what it held before.
void RequireList(NSString* path, id list, const std::string& before) {
    const std::string bytes = BytesOf(list, kFormat);
    REQUIRE(ReadFile(Path(path)) == (bytes.empty() ? before : bytes));
}

void CheckFiles(const std::string& bytes, id list) {
    NSString* const registry = @"~/Library/Safari/Extensions/Extensions.plist";
    NSString* const preferences = @"~/Library/Preferences/com.apple.Safari.plist";
    WriteFile(Path(registry), bytes);
    WriteFile(Path(preferences), bytes);
    [SafariInstall uninstallSafariButton];
    RequireList(registry, Removed(list, @"Keystrel Button"), bytes);
    RequireList(preferences, WithoutButton(list), bytes);

    WriteFile(Path(preferences), bytes);
    [SafariInstall setFillPasswords:YES];
    RequireList(preferences, list == nil ? nil : With(list, @"1", @"AutoFillPasswords"), bytes);
}

void CheckKeychain(const std::string& bytes, NSDictionary* list) {
    keychainItem = [NSData dataWithBytes:bytes.data() length:bytes.size()];
    keychainUpdate.clear();
    const BOOL done = [SafariInstall uninstallSafariExtensionFromKeychain];
    // What no format can hold, as a key that is no text, is not copied, wherever it stands.
    const bool isSound = [list count] > 0 && !BytesOf(list, kFormat).empty();
    const std::string expected = isSound ? BytesOf(WithoutFirst(list), kFormat) : "";
    REQUIRE(done == !expected.empty());
    REQUIRE(keychainUpdate == expected);
}

}  // namespace

// In place of the platform's: the keychain's one item.

OSStatus SecItemCopyMatching(CFDictionaryRef /*query*/, CFTypeRef* result) {
    *result = (CFTypeRef)[keychainItem retain];
    return errSecSuccess;
}

OSStatus SecItemUpdate(CFDictionaryRef /*query*/, CFDictionaryRef attributes) {
    NSData* value = [(NSDictionary*)attributes objectForKey:(id)kSecValueData];
    keychainUpdate.assign(static_cast<const char*>([value bytes]), [value length]);
    return errSecSuccess;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    @autoreleasepool {
        const std::string bytes(reinterpret_cast<const char*>(data), size);
        id list = ListOf(bytes);
        if (![list isKindOfClass:[NSDictionary class]]) {
            list = nil;
        }
        CheckFiles(bytes, list);
        CheckKeychain(bytes, list);
    }
    return 0;
}
