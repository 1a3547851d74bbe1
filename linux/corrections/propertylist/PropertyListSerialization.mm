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

void SetError(NSError** slot, NSInteger code, NSString* text, Problem problem) {
    if (slot != nullptr) {
        NSDictionary* info = @{
            NSLocalizedDescriptionKey : text,
            @"NSDebugDescription" : [NSString stringWithUTF8String:problem]
        };
        *slot = [NSError errorWithDomain:NSCocoaErrorDomain code:code userInfo:info];
    }
}

/// What is no binary list is tried as XML, and what is no XML as old text.
/// @return a reference to the root that the caller owns, or nil
id NewFromBytes(std::string_view bytes, NSPropertyListReadOptions options,
                NSPropertyListFormat& format, Problem& problem) {
    id list = nil;
    if (bytes.substr(0, kBinarySignature.size()) == kBinarySignature) {
        format = NSPropertyListBinaryFormat_v1_0;
        list = NewFromBinary(bytes, options, problem);
    }
    std::string converted;
    std::string_view text;
    if (list == nil && (bytes.empty() || !TextAsUtf8(bytes, converted, text))) {
        problem = "The data is empty, or no text in any known encoding.";
        return nil;
    }
    if (list == nil) {
        format = NSPropertyListXMLFormat_v1_0;
        list = NewFromXML(text, options, problem);
    }
    if (list == nil) {
        format = NSPropertyListOpenStepFormat;
        Problem ofOldText = nullptr;
        list = NewFromOldText(text, options, ofOldText);
    }
    return list;
}

}  // namespace

@implementation NSPropertyListSerialization (AppleFormats)

+ (id)mac_propertyListWithData:(NSData*)data
                       options:(NSPropertyListReadOptions)options
                        format:(NSPropertyListFormat*)format
                         error:(NSError**)error {
    Problem problem = nullptr;
    NSPropertyListFormat found = 0;
    id list = [NewFromBytes({static_cast<const char*>([data bytes]), [data length]}, options, found,
                            problem) autorelease];
    if (list == nil) {
        SetError(error, NSPropertyListReadCorruptError,
                 @"The data couldn’t be read because it isn’t in the correct format.", problem);
    } else if (format != nullptr) {
        *format = found;
    }
    return list;
}

+ (NSData*)mac_dataWithPropertyList:(id)list
                             format:(NSPropertyListFormat)format
                            options:(NSPropertyListWriteOptions)options
                              error:(NSError**)error {
    (void)options;
    Problem problem = "Property lists are written as XML or in the binary format only.";
    std::string bytes;
    if ((format == NSPropertyListXMLFormat_v1_0 && WriteXML(list, bytes, problem)) ||
        (format == NSPropertyListBinaryFormat_v1_0 && WriteBinary(list, bytes, problem))) {
        return [NSData dataWithBytes:bytes.data() length:bytes.size()];
    }
    SetError(error, NSPropertyListWriteStreamError,
             @"The data couldn’t be written as a property list.", problem);
    return nil;
}

@end
