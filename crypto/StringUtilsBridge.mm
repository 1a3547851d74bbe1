#include "crypto/StringUtilsBridge.h"

#include "crypto/StringUtils.h"

@implementation StringUtilsBridge

+ (NSString*)ConvertWStringToNSString:(const std::wstring&)text {
    return [NSString stringWithCString:StringUtils::ConvertWStringToString(text).c_str()
                              encoding:[NSString defaultCStringEncoding]];
}

+ (std::wstring)ConvertNSStringToWString:(NSString*)text {
    const char* bytes = [text UTF8String];
    return bytes != nullptr ? StringUtils::ConvertStringToWString(bytes) : std::wstring();
}

@end
