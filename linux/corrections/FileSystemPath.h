#pragma once

#include <Foundation/Foundation.h>

#include <string>

/// A path as system calls take it: UTF-8, without the separators at its end.
/// @return false for nil, an empty path, and one that no file can have (a NUL character inside)
bool FileSystemPath(NSString* path, std::string& result);

/// The string of a file name; nil for bytes that are not UTF-8, which no Mac disk can hold.
NSString* StringFromFileSystem(const std::string& name);
