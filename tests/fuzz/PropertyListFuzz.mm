// Reading any bytes as a property list never crashes, and a list that was read can be written and
// read again without a difference.
#include <Foundation/Foundation.h>

#include <cstdint>
#include <cstdlib>

namespace {

constexpr NSPropertyListFormat kFormats[] = {NSPropertyListXMLFormat_v1_0,
                                             NSPropertyListBinaryFormat_v1_0};

id Read(NSData* data, NSPropertyListReadOptions options) {
    return [NSPropertyListSerialization propertyListWithData:data
                                                     options:options
                                                      format:nullptr
                                                       error:nullptr];
}

NSData* Write(id list, NSPropertyListFormat format) {
    return [NSPropertyListSerialization dataWithPropertyList:list
                                                      format:format
                                                     options:0
                                                       error:nullptr];
}

/// Equal lists are written alike, byte for byte, so bytes tell what isEqual: could overlook. In XML
/// a text loses the byte-order mark that it begins with. Not everything that can be read can be
/// written: sets, nulls, keys that are no strings; in XML neither half a surrogate pair nor a date
/// beyond any calendar.
void Check(id list, NSPropertyListFormat format, NSPropertyListReadOptions options) {
    NSData* written = Write(list, format);
    if (written == nil) {
        return;
    }
    NSData* again = Write(Read(written, options), format);
    const bool isExact = format == NSPropertyListBinaryFormat_v1_0;
    if (again == nil || (isExact && ![written isEqual:again])) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    @autoreleasepool {
        NSData* data = [NSData dataWithBytes:bytes length:size];
        for (NSPropertyListReadOptions options = NSPropertyListImmutable;
             options <= NSPropertyListMutableContainersAndLeaves; ++options) {
            id list = Read(data, options);
            for (const NSPropertyListFormat format : kFormats) {
                if (list != nil) {
                    Check(list, format, options);
                }
            }
        }
    }
    return 0;
}
