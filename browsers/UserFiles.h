#pragma once

#include <Foundation/Foundation.h>

// What the installers make for the user is open to everybody: other programs of the product, run by
// other users of the machine, replace it later.

/// Creates a folder and the missing ones above it, each new one with mode 0777. A folder that
/// exists is left as it is.
/// @param error  gets the platform's error; untouched on success
BOOL CreateOpenFolder(NSString* path, NSError** error);

/// Sets the mode 0777.
/// @param error  gets the platform's error; untouched on success; may be NULL
BOOL OpenToEverybody(NSString* path, NSError** error);
