#pragma once

#include <Foundation/Foundation.h>

#include <string>

/// Reads a whole file.
/// @return NO with `error` set (256 to 263) when there is nothing to read
BOOL ReadFile(NSString* path, std::string& bytes, NSError** error);
