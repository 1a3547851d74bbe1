#pragma once

#include <Foundation/Foundation.h>

/// Creates a folder and the missing ones above it, each new one with the mode kOpenToEverybody,
/// whatever the umask. A folder that exists is left as it is. Nothing is logged.
/// @param error  gets the platform's error; untouched on success; may be NULL
/// @return whether the folder is there now
BOOL CreateOpenFolder(NSString* path, NSError** error);

/// Sets a file's permissions. Nothing is logged.
/// @param mode  as chmod takes it
/// @return whether that was allowed
BOOL SetFileMode(NSString* path, short mode);
