// plist_pipe: converts property lists, any number of them in one process.
//
// A request on standard input is a line "OPTIONS FORMAT LENGTH" and LENGTH bytes: the list to read,
// the mutability options to read it with (0, 1, 2) and the format to write it in (100 XML, 200
// binary; 1 tells what was read, see Describe; 0 nothing). The answer is a line "STATUS LENGTH" and
// LENGTH bytes. STATUS is the format that was read, then the bytes are what was written; or it is
// the code of the error, then they are its text.
#include <Foundation/Foundation.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr NSPropertyListFormat kNothing = 0;
constexpr NSPropertyListFormat kDescription = 1;

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

// A letter for the kind, then strings as UTF-16 units, dates and reals by their bits.
std::string Describe(id value) {
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
            text += (text.empty() ? "" : ",") + Describe(item);
        }
        return "[" + text + "]";
    }
    if ([value isKindOfClass:[NSDictionary class]]) {
        id uid = [value count] == 1 ? [value objectForKey:@"CF$UID"] : nil;
        if ([uid isKindOfClass:[NSNumber class]]) {
            return "U" + std::to_string([uid unsignedLongLongValue]);
        }
        for (id key in [[value allKeys] sortedArrayUsingSelector:@selector(compare:)]) {
            text += (text.empty() ? "" : ",") + Describe(key) + ":" +
                    Describe([value objectForKey:key]);
        }
        return "{" + text + "}";
    }
    return std::string("?") + class_getName([value class]);
}

void Answer(long status, const void* bytes, std::size_t length) {
    std::printf("%ld %zu\n", status, length);
    std::fwrite(bytes, 1, length, stdout);
    std::fflush(stdout);
}

void Convert(NSPropertyListReadOptions options, NSPropertyListFormat format, NSData* data) {
    NSError* error = nil;
    NSPropertyListFormat readFormat = 0;
    id list = [NSPropertyListSerialization propertyListWithData:data
                                                        options:options
                                                         format:&readFormat
                                                          error:&error];
    if (list != nil && (format == kNothing || format == kDescription)) {
        const std::string text = format == kNothing ? "" : Describe(list);
        Answer(static_cast<long>(readFormat), text.data(), text.size());
        return;
    }
    NSData* written = list == nil ? nil
                                  : [NSPropertyListSerialization dataWithPropertyList:list
                                                                               format:format
                                                                              options:0
                                                                                error:&error];
    if (written == nil) {
        NSData* text = [[error description] dataUsingEncoding:NSUTF8StringEncoding];
        Answer([error code], [text bytes], [text length]);
    } else {
        Answer(static_cast<long>(readFormat), [written bytes], [written length]);
    }
}

}  // namespace

int main() {
    unsigned long options = 0;
    unsigned long format = 0;
    std::size_t length = 0;
    while (std::scanf("%lu %lu %zu", &options, &format, &length) == 3 && std::getchar() == '\n') {
        @autoreleasepool {
            NSMutableData* data = [NSMutableData dataWithLength:length];
            if (std::fread([data mutableBytes], 1, length, stdin) != length) {
                return 1;
            }
            Convert(options, format, data);
        }
    }
    return 0;
}
