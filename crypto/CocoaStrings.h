#pragma once

#include <Foundation/Foundation.h>

#include <string>

// Byte strings to Cocoa strings and back: the one way of the bridges and of the logger.

/// The text up to its first NUL, read in the default C-string encoding.
/// @return an autoreleased string; nil when the bytes mean nothing in that encoding
NSString* CocoaString(const std::string& text);

/// The text up to its first NUL, read as UTF-8.
/// @return an autoreleased string; nil when the bytes are not UTF-8
NSString* CocoaStringFromUtf8(const std::string& text);

/// The UTF-8 bytes of the whole text, NUL included. An unpaired half of a surrogate pair, which a
/// user's file may well hold, has none: each becomes U+FFFD, so that the rest is not lost with it.
/// @return empty for nil
std::string Utf8Bytes(NSString* text);
