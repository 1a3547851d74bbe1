#pragma once

#include <Foundation/Foundation.h>

#include <string>

/// Wide strings to Cocoa strings and back, both through byte strings in the process's C locale. No
/// instances, no state. Nothing is logged.
@interface StringUtilsBridge : NSObject

/// Text up to its first NUL.
/// @return an autoreleased string: empty when the C locale has no form for one of the characters,
///         nil when the bytes are not valid in the default C-string encoding
+ (NSString*)ConvertWStringToNSString:(const std::wstring&)text;

/// Text up to its first NUL.
/// @return empty for nil, and when the C locale gives one of the UTF-8 bytes no meaning
+ (std::wstring)ConvertNSStringToWString:(NSString*)text;

@end
