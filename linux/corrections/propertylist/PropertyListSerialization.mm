// Property lists, read in all of Apple's formats and written in XML and binary. GNUstep's own code
// raises on most malformed input or prints to standard error, loses large integers and characters
// beyond the BMP, and writes objects of other classes as text. libplist is no base either: its
// functions cut dates to 68 years around 2001, cannot tell -1 from 2^64 - 1, drop control
// characters and read "abc" as the integer 0.
#include <Foundation/Foundation.h>

#include "linux/corrections/propertylist/BinaryFormat.h"
#include "linux/corrections/propertylist/Formats.h"
#include "linux/corrections/propertylist/Text.h"

using namespace propertylist;

namespace {

void SetError(NSError** slot, NSInteger code, NSString* text, NSString* problem) {
    if (slot != nullptr) {
        NSDictionary* info = @{NSLocalizedDescriptionKey : text, @"NSDebugDescription" : problem};
        *slot = [NSError errorWithDomain:NSCocoaErrorDomain code:code userInfo:info];
    }
}

/// What is no binary list is tried as XML, and what is no XML as old text.
id Read(std::string_view bytes, NSPropertyListReadOptions options, NSPropertyListFormat& format) {
    if (bytes.substr(0, kBinarySignature.size()) == kBinarySignature) {
        @try {
            format = NSPropertyListBinaryFormat_v1_0;
            return ReadBinary(bytes, options);
        } @catch (NSString*) {
        }
    }
    if (bytes.empty()) {
        @throw @"The data is empty.";
    }
    const std::string text = TextAsUtf8(bytes);
    @try {
        format = NSPropertyListXMLFormat_v1_0;
        return ReadXML(text, options);
    } @catch (NSString*) {
    }
    format = NSPropertyListOpenStepFormat;
    return ReadOldText(text, options);
}

}  // namespace

@implementation NSPropertyListSerialization (AppleFormats)

+ (id)mac_propertyListWithData:(NSData*)data
                       options:(NSPropertyListReadOptions)options
                        format:(NSPropertyListFormat*)format
                         error:(NSError**)error {
    @try {
        NSPropertyListFormat found = 0;
        id list = Read({static_cast<const char*>([data bytes]), [data length]}, options, found);
        if (format != nullptr) {
            *format = found;
        }
        return list;
    } @catch (NSString* problem) {
        SetError(error, NSPropertyListReadCorruptError,
                 @"The data couldn’t be read because it isn’t in the correct format.", problem);
        return nil;
    }
}

+ (NSData*)mac_dataWithPropertyList:(id)list
                             format:(NSPropertyListFormat)format
                            options:(NSPropertyListWriteOptions)options
                              error:(NSError**)error {
    (void)options;
    @try {
        if (format != NSPropertyListXMLFormat_v1_0 && format != NSPropertyListBinaryFormat_v1_0) {
            @throw @"Property lists are written as XML or in the binary format only.";
        }
        return format == NSPropertyListXMLFormat_v1_0 ? WriteXML(list) : WriteBinary(list);
    } @catch (NSString* problem) {
        SetError(error, NSPropertyListWriteStreamError,
                 @"The data couldn’t be written as a property list.", problem);
        return nil;
    }
}

@end
