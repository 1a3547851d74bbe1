#pragma once

#include <Foundation/Foundation.h>

// Property lists to bytes and back, for the settings, Safari's files and the marker of the
// generation. Nothing is logged and nothing raises: what a failure means is each caller's affair.

/// Parses a property list of any format.
/// @param options  whether what it holds is mutable
/// @param data     nil is no property list
/// @param error    gets the reason; untouched on success and for nil data; may be NULL
/// @return autoreleased; nil when the bytes are no property list
id ParsePropertyList(NSData* data, NSPropertyListMutabilityOptions options, NSError** error);

/// Encodes a property list.
/// @param error  gets the reason; untouched on success; may be NULL
/// @return autoreleased; nil when something in it fits no property list of the format, and for nil
NSData* EncodePropertyList(id root, NSPropertyListFormat format, NSError** error);

/// Reads a file that may hold a property list of any format.
/// @param error  gets the platform's error when the file cannot be read, else ParsePropertyList's
/// @return autoreleased; nil when there is none
id ReadPropertyList(NSString* path, NSPropertyListMutabilityOptions options, NSError** error);

/// Writes a property list, atomically. nil is not written.
/// @param error  gets EncodePropertyList's error, else the platform's when the file cannot be
///               written; may be NULL
/// @return whether the file was written
BOOL WritePropertyList(id root, NSPropertyListFormat format, NSString* path, NSError** error);
