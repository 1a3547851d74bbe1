#pragma once

#include <Foundation/Foundation.h>

/// Creates a folder and the missing ones above it, each new one open to everybody. A folder that
/// exists is left as it is.
/// @param error  gets the platform's error; untouched on success; may be NULL
BOOL CreateOpenFolder(NSString* path, NSError** error);

/// Opens a file to everybody.
/// @param error  gets the platform's error; untouched on success; may be NULL
BOOL OpenToEverybody(NSString* path, NSError** error);
