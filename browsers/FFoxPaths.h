#pragma once

#include <Foundation/Foundation.h>

// Where Firefox and the product's payload for it keep their files; every function gives an absolute
// path, autoreleased, and asks nobody whether it exists.

NSArray* FFoxApplicationFolders();      ///< of extensions for the application; the computer's first
NSString* FFoxUserApplicationFolder();  ///< the user's among them
NSString* FFoxProfilesFolder();         ///< ends in "/"
NSString* FFoxHostFolder();             ///< of native-messaging host manifests
NSString* FFoxInstalledHostManifest();
NSString* FFoxPayloadHostManifest();

/// In an application folder, beside the extensions.
static NSString* const kFFoxTypesFolder = @"js-ctypes";

/// In a profile: the registry of extensions, and what Firefox derives from it.
static NSString* const kFFoxRegistry = @"extensions.rdf";
static NSString* const kFFoxCacheFiles[] = {@"extensions.ini", @"extensions.cache", @"compreg.dat",
                                            @"xpti.dat", @"extensiondev.rdf"};
