#include "platform/CocoaStrings.h"

NSString* CocoaString(const std::string& text) {
    return [NSString stringWithCString:text.c_str() encoding:[NSString defaultCStringEncoding]];
}

std::string Utf8Bytes(NSString* text) {
    NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding];
    return std::string(static_cast<const char*>([bytes bytes]), [bytes length]);
}
