#include "tests/support/PropertyListDescription.h"

#include <cstdio>
#include <cstring>

namespace {

template <typename Number>
std::string Hex(Number number, int digits) {
    unsigned long long bits = 0;
    std::memcpy(&bits, &number, sizeof number);
    char text[32];
    std::snprintf(text, sizeof text, "%0*llx", digits, bits);
    return text;
}

std::string DescribeNumber(NSNumber* number) {
    const char type = *[number objCType];
    if ([number isKindOfClass:[[NSNumber numberWithBool:YES] class]]) {
        return [number boolValue] ? "T" : "F";
    }
    if (type == *@encode(double)) {
        return "d" + Hex([number doubleValue], 16);
    }
    if (type == *@encode(float)) {
        return "f" + Hex([number floatValue], 8);
    }
    return "I" + (type == *@encode(unsigned long long)
                      ? std::to_string([number unsignedLongLongValue])
                      : std::to_string([number longLongValue]));
}

}  // namespace

std::string DescribePropertyList(id value) {
    std::string text;
    if ([value isKindOfClass:[NSString class]]) {
        for (NSUInteger i = 0; i < [value length]; ++i) {
            text += Hex([value characterAtIndex:i], 4);
        }
        return "S" + text;
    }
    if ([value isKindOfClass:[NSNumber class]]) {
        return DescribeNumber(value);
    }
    if ([value isKindOfClass:[NSDate class]]) {
        return "D" + Hex([value timeIntervalSinceReferenceDate], 16);
    }
    if ([value isKindOfClass:[NSData class]]) {
        for (NSUInteger i = 0; i < [value length]; ++i) {
            text += Hex(static_cast<const unsigned char*>([value bytes])[i], 2);
        }
        return "X" + text;
    }
    if ([value isKindOfClass:[NSArray class]]) {
        for (id item in value) {
            text += (text.empty() ? "" : ",") + DescribePropertyList(item);
        }
        return "[" + text + "]";
    }
    if ([value isKindOfClass:[NSDictionary class]]) {
        id uid = [value count] == 1 ? [value objectForKey:@"CF$UID"] : nil;
        if ([uid isKindOfClass:[NSNumber class]]) {
            return "U" + std::to_string([uid unsignedLongLongValue]);
        }
        for (id key in [[value allKeys] sortedArrayUsingSelector:@selector(compare:)]) {
            text += (text.empty() ? "" : ",") + DescribePropertyList(key) + ":" +
                    DescribePropertyList([value objectForKey:key]);
        }
        return "{" + text + "}";
    }
    return "?" + std::string([NSStringFromClass([value class]) UTF8String]);
}
