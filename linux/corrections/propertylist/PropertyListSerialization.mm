// Property lists, read in all of Apple's formats and written in XML and binary. GNUstep's own code
// raises on most malformed input or prints to standard error, loses large integers and characters
// beyond the BMP, and writes objects of other classes as text. libplist is no base either: its
// functions cut dates to 68 years around 2001, cannot tell -1 from 2^64 - 1, drop control
// characters and read "abc" as the integer 0.
//
// The formats that only GNUstep writes are still written by it.
#include <Foundation/Foundation.h>

#include <objc/runtime.h>

#include "linux/corrections/propertylist/BinaryFormat.h"
#include "linux/corrections/propertylist/BinaryReader.h"
#include "linux/corrections/propertylist/BinaryWriter.h"
#include "linux/corrections/propertylist/Encoding.h"
#include "linux/corrections/propertylist/OldTextReader.h"
#include "linux/corrections/propertylist/XMLReader.h"
#include "linux/corrections/propertylist/XMLWriter.h"

using propertylist::IsOldText;
using propertylist::NewFromBinary;
using propertylist::NewFromOldText;
using propertylist::NewFromXML;
using propertylist::WriteBinary;
using propertylist::WriteXML;

namespace {

NSString* const kReadingFailed =
    @"The data couldn’t be read because it isn’t in the correct format.";
NSString* const kWritingFailed = @"The data couldn’t be written as a property list.";
NSString* const kDetailKey = @"NSDebugDescription";

void SetError(NSError** slot, NSInteger code, NSString* text, Problem problem) {
    if (slot == nullptr) {
        return;
    }
    NSDictionary* info =
        @{NSLocalizedDescriptionKey : text, kDetailKey : [NSString stringWithUTF8String:problem]};
    *slot = [NSError errorWithDomain:NSCocoaErrorDomain code:code userInfo:info];
}

/// @return a reference to the root that the caller owns, or nil
id NewFromBytes(std::string_view bytes, NSPropertyListReadOptions options,
                NSPropertyListFormat& format, Problem& problem) {
    if (bytes.substr(0, propertylist::kBinarySignature.size()) == propertylist::kBinarySignature) {
        format = NSPropertyListBinaryFormat_v1_0;
        return NewFromBinary(bytes, options, problem);
    }
    std::string converted;
    const std::string_view text = TextAsUtf8(bytes, converted);
    if (text.empty()) {
        problem = "The data is no text in any known encoding.";
        return nil;
    }
    if (IsOldText(text)) {
        format = NSPropertyListOpenStepFormat;
        return NewFromOldText(text, options, problem);
    }
    format = NSPropertyListXMLFormat_v1_0;
    return NewFromXML(text, options, problem);
}

bool WriteBytes(id list, NSPropertyListFormat format, std::string& bytes, Problem& problem) {
    return format == NSPropertyListXMLFormat_v1_0 ? WriteXML(list, bytes, problem)
                                                  : WriteBinary(list, bytes, problem);
}

bool IsOurs(NSPropertyListFormat format) {
    return format == NSPropertyListXMLFormat_v1_0 || format == NSPropertyListBinaryFormat_v1_0;
}

bool IsGNUsteps(NSPropertyListFormat format) {
    return format == NSPropertyListOpenStepFormat || format == NSPropertyListGNUstepFormat ||
           format == NSPropertyListGNUstepBinaryFormat;
}

/// The older methods have a text where the newer ones have an error. Apple leaves it to the caller
/// to release, GNUstep does not: a constant suits both.
void SetText(NSString** slot, id result, NSString* text) {
    if (slot != nullptr) {
        *slot = result == nil ? text : nil;
    }
}

}  // namespace

@implementation NSPropertyListSerialization (AppleFormats)

+ (void)load {
    // gcc's runtime forgets to initialise a class whose methods were exchanged before.
    @autoreleasepool {
        [self class];
    }
    method_exchangeImplementations(
        class_getClassMethod(self, @selector(dataWithPropertyList:format:options:error:)),
        class_getClassMethod(self, @selector(gnustep_dataWithPropertyList:format:options:error:)));
}

+ (id)propertyListWithData:(NSData*)data
                   options:(NSPropertyListReadOptions)options
                    format:(NSPropertyListFormat*)format
                     error:(NSError**)error {
    Problem problem = nullptr;
    NSPropertyListFormat found = 0;
    id list = [NewFromBytes({static_cast<const char*>([data bytes]), [data length]}, options, found,
                            problem) autorelease];
    if (list == nil) {
        SetError(error, NSPropertyListReadCorruptError, kReadingFailed, problem);
    } else if (format != nullptr) {
        *format = found;
    }
    return list;
}

// Once the implementations have changed places, the name with the prefix is GNUstep's own method
// and the body below it is what the plain name does.
+ (NSData*)gnustep_dataWithPropertyList:(id)list
                                 format:(NSPropertyListFormat)format
                                options:(NSPropertyListWriteOptions)options
                                  error:(NSError**)error {
    Problem problem = "The format is unknown, or the list does not suit it.";
    NSData* data = nil;
    if (IsOurs(format)) {
        std::string bytes;
        if (WriteBytes(list, format, bytes, problem)) {
            data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
        }
    } else if (IsGNUsteps(format) && list != nil) {
        @try {
            data = [self gnustep_dataWithPropertyList:list
                                               format:format
                                              options:options
                                                error:nullptr];
        } @catch (NSException* exception) {
            data = nil;
        }
    }
    if (data == nil) {
        SetError(error, NSPropertyListWriteStreamError, kWritingFailed, problem);
    }
    return data;
}

+ (id)propertyListFromData:(NSData*)data
          mutabilityOption:(NSPropertyListMutabilityOptions)options
                    format:(NSPropertyListFormat*)format
          errorDescription:(NSString**)text {
    id list = [self propertyListWithData:data options:options format:format error:nullptr];
    SetText(text, list, kReadingFailed);
    return list;
}

+ (NSData*)dataFromPropertyList:(id)list
                         format:(NSPropertyListFormat)format
               errorDescription:(NSString**)text {
    NSData* data = [self dataWithPropertyList:list format:format options:0 error:nullptr];
    SetText(text, data, kWritingFailed);
    return data;
}

+ (BOOL)propertyList:(id)list isValidForFormat:(NSPropertyListFormat)format {
    return [self dataWithPropertyList:list format:format options:0 error:nullptr] != nil;
}

+ (id)propertyListWithStream:(NSInputStream*)stream
                     options:(NSPropertyListReadOptions)options
                      format:(NSPropertyListFormat*)format
                       error:(NSError**)error {
    NSMutableData* data = [NSMutableData data];
    std::uint8_t buffer[1 << 14];
    NSInteger length = 0;
    while ((length = [stream read:buffer maxLength:sizeof buffer]) > 0) {
        [data appendBytes:buffer length:length];
    }
    if (length < 0) {
        SetError(error, NSPropertyListReadStreamError, kReadingFailed,
                 "The stream cannot be read.");
        return nil;
    }
    return [self propertyListWithData:data options:options format:format error:error];
}

+ (NSInteger)writePropertyList:(id)list
                      toStream:(NSOutputStream*)stream
                        format:(NSPropertyListFormat)format
                       options:(NSPropertyListWriteOptions)options
                         error:(NSError**)error {
    NSData* data = [self dataWithPropertyList:list format:format options:options error:error];
    NSUInteger written = 0;
    while (written < [data length]) {
        const NSInteger length =
            [stream write:static_cast<const std::uint8_t*>([data bytes]) + written
                maxLength:[data length] - written];
        if (length <= 0) {
            SetError(error, NSPropertyListWriteStreamError, kWritingFailed,
                     "The stream cannot be written.");
            return 0;
        }
        written += length;
    }
    return written;
}

@end
