// Security's status codes, with Apple's values.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

enum {
    errSecSuccess = 0,
    /// Something in the call is wrong, or is nothing that this implementation knows.
    errSecParam = -50,
    /// There is no keychain, or it cannot be used.
    errSecNotAvailable = -25291,
    /// The keychain's password is wrong.
    errSecAuthFailed = -25293,
    errSecItemNotFound = -25300,
    /// The item is locked; nobody is asked to unlock it.
    errSecInteractionNotAllowed = -25308
};
