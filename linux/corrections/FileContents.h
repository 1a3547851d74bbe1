#pragma once

#include <Foundation/Foundation.h>

#include <string>

#include "linux/corrections/FileBytes.h"

/// Reads a whole file.
/// @return false with `error` set (256 to 260) when there is nothing to read
bool ReadFile(NSString* path, std::string& bytes, NSError** error);

/// Writes a whole file.
/// @return NO with `error` set (4, 512 to 642) when it could not be written
BOOL WriteFile(NSString* path, NSData* bytes, WriteMode mode, NSError** error);

/// What a failed reading or writing is called in an error's text.
NSString* ReadingFailed(NSString* path);
NSString* WritingFailed(NSString* path);
