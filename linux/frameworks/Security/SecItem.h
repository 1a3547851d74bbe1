// Keychain items, with Apple's names and prototypes. Generic passwords only: a query names their
// class, and may name a label, whether to return the data, and the limit of one match. Any other
// key or value is refused with errSecParam.
#pragma once

#include <Security/SecBase.h>

#ifdef __cplusplus
extern "C" {
#endif

extern const CFStringRef kSecClass;
extern const CFStringRef kSecClassGenericPassword;
extern const CFStringRef kSecAttrLabel;
extern const CFStringRef kSecReturnData;
extern const CFStringRef kSecMatchLimit;
extern const CFStringRef kSecMatchLimitOne;
extern const CFStringRef kSecValueData;

/// Finds the first item that the query describes.
/// @param query   see above
/// @param result  gets the item's data (a CFDataRef), for the caller to release, when the query
///                asks for it; else NULL; may be NULL
/// @return errSecSuccess, errSecItemNotFound, errSecInteractionNotAllowed when the item is locked,
///         errSecAuthFailed or errSecNotAvailable when there is no keychain to look into
OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result);

/// Gives the first item that the query describes new data.
/// @param query               as for SecItemCopyMatching
/// @param attributesToUpdate  kSecValueData and its new value, nothing else
/// @return as SecItemCopyMatching
OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate);

#ifdef __cplusplus
}
#endif
