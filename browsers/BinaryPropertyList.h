#pragma once

#include <Foundation/Foundation.h>

/// Parses a property list of any format; everything in it is mutable.
/// @param data   nil is no property list
/// @param error  gets the platform's error; untouched on success; may be NULL
/// @return autoreleased; nil when the bytes are no property list
id ParsePropertyList(NSData* data, NSError** error);

/// Encodes a property list in the binary format.
/// @param root   nil gives nil and no error
/// @param error  gets the platform's error; untouched on success; may be NULL
/// @return autoreleased; nil when something in it fits no property list
NSData* EncodeBinaryPropertyList(id root, NSError** error);

/// Writes a property list in the binary format, atomically. What cannot be encoded, nil among it,
/// is not written, and that is no failure.
/// @param error  gets the platform's error when the file cannot be written; else untouched
/// @return NO when the file cannot be written
BOOL WriteBinaryPropertyList(id root, NSString* path, NSError** error);
