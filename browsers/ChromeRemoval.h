#pragma once

#include <Foundation/Foundation.h>

/// Removes a file of Chrome's integration. Logs, as warnings, "Error removing file: %@" with the
/// error's description, or "No delete, file not present: %@" when there is no such file.
/// @param path      the file, or a folder with all it holds
/// @param reported  the path that the second message names
void RemoveChromeFile(NSString* path, NSString* reported);
