#include <Foundation/Foundation.h>
#include <Security/SecItem.h>

#include "linux/frameworks/Security/Keychain.h"

const CFStringRef kSecClass = (CFStringRef) @"class";
const CFStringRef kSecClassGenericPassword = (CFStringRef) @"genp";
const CFStringRef kSecAttrLabel = (CFStringRef) @"labl";
const CFStringRef kSecReturnData = (CFStringRef) @"r_Data";
const CFStringRef kSecMatchLimit = (CFStringRef) @"m_Limit";
const CFStringRef kSecMatchLimitOne = (CFStringRef) @"m_LimitOne";
const CFStringRef kSecValueData = (CFStringRef) @"v_Data";

namespace {

struct Query {
    bool ofGenericPasswords = false;
    bool returnsData = false;
    std::optional<std::string> label;
};

bool Is(id object, CFStringRef constant) {
    return [(NSString*)constant isEqual:object];
}

bool ReadCondition(id key, id value, Query& query) {
    if (Is(key, kSecClass)) {
        query.ofGenericPasswords = Is(value, kSecClassGenericPassword);
        return query.ofGenericPasswords;
    }
    if (Is(key, kSecAttrLabel) && [value isKindOfClass:[NSString class]]) {
        query.label = [value UTF8String];
        return true;
    }
    if (Is(key, kSecReturnData) && [value isKindOfClass:[NSNumber class]]) {
        query.returnsData = [value boolValue];
        return true;
    }
    return Is(key, kSecMatchLimit) && Is(value, kSecMatchLimitOne);
}

bool ReadQuery(CFDictionaryRef dictionary, Query& query) {
    NSDictionary* conditions = (NSDictionary*)dictionary;
    for (id key in conditions) {
        if (!ReadCondition(key, [conditions objectForKey:key], query)) {
            return false;
        }
    }
    return query.ofGenericPasswords;
}

}  // namespace

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
    if (result != nullptr) {
        *result = nullptr;
    }
    @autoreleasepool {
        Query wanted;
        if (!ReadQuery(query, wanted)) {
            return errSecParam;
        }
        std::string data;
        const OSStatus status = ReadKeychainItem(wanted.label, data);
        if (status == errSecSuccess && result != nullptr && wanted.returnsData) {
            *result = [[NSData alloc] initWithBytes:data.data() length:data.size()];
        }
        return status;
    }
}

OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate) {
    @autoreleasepool {
        Query wanted;
        NSDictionary* attributes = (NSDictionary*)attributesToUpdate;
        NSData* data = [attributes objectForKey:(id)kSecValueData];
        if (!ReadQuery(query, wanted) || [attributes count] != 1 ||
            ![data isKindOfClass:[NSData class]]) {
            return errSecParam;
        }
        return WriteKeychainItem(
            wanted.label, std::string(static_cast<const char*>([data bytes]), [data length]));
    }
}
