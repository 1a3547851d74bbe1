#pragma once

#include <Foundation/Foundation.h>

// Errors of file operations as Apple's Foundation reports them: NSCocoaErrorDomain, Apple's codes
// and sentences, with the path and the POSIX error below it in the user info.

enum class FileAction { Read, List, Write, MakeFolder, Copy, Remove };

/// No errno: a path that no file can have.
constexpr int kInvalidName = 0;

/// Stores the error of a failed operation where a caller asked for it.
/// @param target  where a copy was to go
/// @return NO, to be handed on
BOOL Fail(NSError** slot, FileAction action, int posixError, NSString* path,
          NSString* target = nil);

/// Stores the error of a file that is no text in the encoding asked for.
void FailEncoding(NSError** slot, NSStringEncoding encoding, NSString* path);
