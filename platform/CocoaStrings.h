#pragma once

#include <Foundation/Foundation.h>

#include <string>

// Byte strings to Cocoa strings and back, as the bridges pass them.

/// The text up to its first NUL, read in the default C-string encoding.
/// @return an autoreleased string; nil when the bytes mean nothing in that encoding
NSString* CocoaString(const std::string& text);

/// The UTF-8 bytes of `text`.
/// @return empty for nil, and for a text that has no UTF-8 form (half a surrogate pair)
std::string Utf8Bytes(NSString* text);
