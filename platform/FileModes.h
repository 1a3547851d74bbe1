#pragma once

#include <Foundation/Foundation.h>
#include <sys/types.h>

/// Creates a folder and the missing ones above it, each new one with the mode kOpenToEverybody,
/// whatever the umask. A folder that exists is left as it is. Nothing is logged.
/// @param error  gets the platform's error; untouched on success; may be NULL
/// @return whether the folder is there now
BOOL CreateOpenFolder(NSString* path, NSError** error);

/// Sets the permissions of a regular file, also of one that nobody may read. What is no file keeps
/// its own, and so does what a link leads to: whoever can put a link where the product writes
/// must not open the file behind it. Nothing is logged.
/// @param mode  as chmod takes it
/// @return whether there is a file and that was allowed
BOOL SetFileMode(NSString* path, mode_t mode);
