#pragma once

#include <Foundation/Foundation.h>

// Errors of file operations as Apple's Foundation reports them: NSCocoaErrorDomain, with the path
// and the POSIX error below it in the user info.

/// NSCocoaErrorDomain's code for an errno, when something was to be read or listed (256 to 263).
NSInteger CocoaReadingCode(int posixError);

/// The same when something was to be written, made, moved or removed (4, 512 to 642).
NSInteger CocoaWritingCode(int posixError);

/// Makes the error of a file operation.
/// @param failed  what went wrong as the beginning of a sentence, such as "“a.json” couldn’t be
///                removed"; the reason that belongs to the code and a full stop are added
/// @param posixError  0 when no system call was at fault
NSError* FileError(NSInteger code, NSString* failed, NSString* path, int posixError);

/// The last component of a path in quotation marks, for FileError's sentences.
NSString* QuotedName(NSString* path);
NSString* QuotedFolderName(NSString* path);

/// Stores `error` where a caller asked for it.
/// @return NO, to be handed on
BOOL Fail(NSError** slot, NSError* error);
