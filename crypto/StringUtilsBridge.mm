#include "crypto/StringUtilsBridge.h"

#include "crypto/CocoaStrings.h"
#include "crypto/StringUtils.h"

@implementation StringUtilsBridge

+ (NSString*)ConvertWStringToNSString:(const std::wstring&)text {
    return CocoaString(StringUtils::ConvertWStringToString(text));
}

+ (std::wstring)ConvertNSStringToWString:(NSString*)text {
    return StringUtils::ConvertStringToWString(Utf8Bytes(text));
}

@end
