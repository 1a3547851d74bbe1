// plist_pipe: converts property lists, any number of them in one process.
//
// A request on standard input is a line "OPTIONS FORMAT LENGTH" and LENGTH bytes: the list to read,
// the mutability options to read it with (0, 1, 2) and the format to write it in (100 XML, 200
// binary; 1 tells what was read, see DescribePropertyList; 0 nothing). The answer is a line "STATUS
// LENGTH" and LENGTH bytes. STATUS is the format that was read, then the bytes are what was
// written; or it is the code of the error, then they are its text.
#include <Foundation/Foundation.h>

#include <cstdio>
#include <string>

#include "tests/support/PropertyListDescription.h"

namespace {

constexpr NSPropertyListFormat kNothing = 0;
constexpr NSPropertyListFormat kDescription = 1;

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
        const std::string text = format == kNothing ? "" : DescribePropertyList(list);
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
