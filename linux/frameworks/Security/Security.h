// The part of the Security framework that the program meets, with Apple's names and prototypes.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

// Authorization Services

typedef const struct AuthorizationOpaqueRef* AuthorizationRef;
typedef const char* AuthorizationString;
typedef UInt32 AuthorizationFlags;

typedef struct {
    AuthorizationString name;
    size_t valueLength;
    void* value;
    UInt32 flags;
} AuthorizationItem;

typedef struct {
    UInt32 count;
    AuthorizationItem* items;
} AuthorizationItemSet;

typedef AuthorizationItemSet AuthorizationRights;
typedef AuthorizationItemSet AuthorizationEnvironment;

enum {
    kAuthorizationFlagDefaults = 0,
    kAuthorizationFlagInteractionAllowed = 1,
    kAuthorizationFlagExtendRights = 2,
    kAuthorizationFlagDestroyRights = 8,
    kAuthorizationFlagPreAuthorize = 16,
};

enum {
    errAuthorizationSuccess = 0,
    errAuthorizationDenied = -60005,
    errAuthorizationCanceled = -60006,
};

/// Makes an authorization without rights; the other arguments are not looked at.
OSStatus AuthorizationCreate(const AuthorizationRights* rights,
                             const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                             AuthorizationRef* authorization);

/// Asks the user for each right in turn and stops at the first that is not given. The other
/// arguments are not looked at. A reference that was freed ends the program, as it may on a Mac.
OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* environment,
                                 AuthorizationFlags flags, AuthorizationRights** authorizedRights);

/// A reference that was freed before ends the program, as on a Mac.
OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags flags);

// Sessions

typedef UInt32 SecuritySessionId;
typedef UInt32 SessionAttributeBits;

enum {
    callerSecuritySession = (SecuritySessionId)-1,
    sessionHasGraphicAccess = 0x0010,
    errSessionSuccess = 0,
    errSessionInvalidId = -60500,
};

/// Tells whether a window can be shown: whether the X display can be opened.
/// @param session     callerSecuritySession; no other one is known
/// @param sessionId   must be NULL: sessions have no numbers here
/// @param attributes  gets sessionHasGraphicAccess, or no bit
OSStatus SessionGetInfo(SecuritySessionId session, SecuritySessionId* sessionId,
                        SessionAttributeBits* attributes);

// The keychain

enum {
    errSecSuccess = 0,
    /// The query or the attributes are of another form than below.
    errSecParam = -50,
    /// There is no keychain, or it cannot be used.
    errSecNotAvailable = -25291,
    /// The keychain's password is wrong.
    errSecAuthFailed = -25293,
    errSecItemNotFound = -25300,
    /// The item is locked; nobody is asked to unlock it.
    errSecInteractionNotAllowed = -25308,
};

extern const CFStringRef kSecClass;
extern const CFStringRef kSecClassGenericPassword;
extern const CFStringRef kSecAttrLabel;
extern const CFStringRef kSecReturnData;
extern const CFStringRef kSecMatchLimit;
extern const CFStringRef kSecMatchLimitOne;
extern const CFStringRef kSecValueData;

/// Finds the first generic password with a label.
/// @param query   kSecClass, kSecAttrLabel, kSecReturnData (true) and kSecMatchLimit (one); nothing
///                else
/// @param result  gets the item's data (a CFDataRef) for the caller to release, else NULL
OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result);

/// Gives the first generic password with a label new data.
/// @param query               as for SecItemCopyMatching
/// @param attributesToUpdate  kSecValueData and its new value, nothing else
OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate);

#ifdef __cplusplus
}
#endif
