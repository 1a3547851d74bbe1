#pragma once

#include <Foundation/Foundation.h>

// Bundles in Apple's layout, "X.app" with "Contents/Info.plist" inside.

/// The Info dictionary of the bundle at a path; nil when there is none that can be read.
/// @param error  gets why its file could not be read
NSDictionary* ApplicationInfo(NSString* bundlePath, NSError** error = NULL);

/// CFBundleIdentifier; nil when the dictionary has none or something other than a text.
NSString* ApplicationIdentifier(NSDictionary* info);

/// What a person reads: CFBundleDisplayName, else CFBundleName, else the folder's name without
/// ".app".
NSString* ApplicationName(NSString* bundlePath, NSDictionary* info);

/// The path of the program that the bundle runs: CFBundleExecutable, else the folder's name without
/// ".app". nil when there is no bundle that can be read.
NSString* ApplicationProgram(NSString* bundlePath);
