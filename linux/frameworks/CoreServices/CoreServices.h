// The part of Core Services that the program meets, with Apple's names, types and prototypes:
// Launch Services' search for an application.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A file on a classic volume; never filled in here.
typedef struct FSRef {
    UInt8 hidden[80];
} FSRef;

enum {
    noErr = 0,
    kLSUnknownErr = -10810,
    kLSApplicationNotFoundErr = -10814,
};

/// Finds an application by its bundle identifier; upper and lower case count alike. Applications
/// are looked for in /Applications, the user's Applications folder and /System/Applications, in
/// this order, and in the folders directly inside them; in each folder by name. The first one wins.
/// @param inCreator, inName, outAppRef  not looked at
/// @param outAppURL  gets the application's URL, which ends in "/" and which the caller releases;
///                   untouched unless the answer is noErr
/// @return noErr; kLSUnknownErr when nothing was found and something could not be read; else
///         kLSApplicationNotFoundErr
OSStatus LSFindApplicationForInfo(OSType inCreator, CFStringRef inBundleID, CFStringRef inName,
                                  FSRef* outAppRef, CFURLRef* outAppURL);

#ifdef __cplusplus
}
#endif
