// Property lists in Apple's two formats, XML and binary. GNUstep's own code raises on most
// malformed input, loses large integers and characters beyond the BMP, and writes objects of other
// classes as text. libplist is no base either: its functions cut dates to 68 years around 2001,
// cannot tell -1 from 2^64 - 1, drop control characters and read "abc" as the integer 0.
//
// The formats that only GNUstep writes, and the old text format, stay with GNUstep.
#include <Foundation/Foundation.h>

#include <objc/runtime.h>

#include "linux/corrections/propertylist/BinaryFormat.h"
#include "linux/corrections/propertylist/BinaryReader.h"
#include "linux/corrections/propertylist/BinaryWriter.h"
#include "linux/corrections/propertylist/Encoding.h"
#include "linux/corrections/propertylist/OldText.h"
#include "linux/corrections/propertylist/XMLReader.h"
#include "linux/corrections/propertylist/XMLWriter.h"

using propertylist::NewFromBinary;
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

/// Reads Apple's two formats.
/// @param isOldText  gets whether the data may be a list in the old text format instead
id NewFromBytes(std::string_view bytes, NSPropertyListReadOptions options,
                NSPropertyListFormat& format, bool& isOldText, Problem& problem) {
    isOldText = false;
    if (bytes.substr(0, propertylist::kBinarySignature.size()) == propertylist::kBinarySignature) {
        format = NSPropertyListBinaryFormat_v1_0;
        return NewFromBinary(bytes, options, problem);
    }
    std::string converted;
    const std::string_view text = TextAsUtf8(bytes, converted);
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos) {
        problem = "The data is no text in any known encoding.";
        return nil;
    }
    if (IsOldText(text)) {
        isOldText = true;
        return nil;
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

void Exchange(Class owner, SEL first, SEL second) {
    method_exchangeImplementations(class_getClassMethod(owner, first),
                                   class_getClassMethod(owner, second));
}

}  // namespace

@implementation NSPropertyListSerialization (AppleFormats)

+ (void)load {
    // gcc's runtime forgets to initialise a class whose methods were exchanged before.
    @autoreleasepool {
        [self class];
    }
    Exchange(self, @selector(propertyListWithData:options:format:error:),
             @selector(gnustep_propertyListWithData:options:format:error:));
    Exchange(self, @selector(dataWithPropertyList:format:options:error:),
             @selector(gnustep_dataWithPropertyList:format:options:error:));
}

// Once the implementations have changed places, the name with the prefix is GNUstep's own method
// and the body below it is what the plain name does.
+ (id)gnustep_propertyListWithData:(NSData*)data
                           options:(NSPropertyListReadOptions)options
                            format:(NSPropertyListFormat*)format
                             error:(NSError**)error {
    Problem problem = "There is no data.";
    NSPropertyListFormat found = NSPropertyListOpenStepFormat;
    id list = nil;
    if ([data length] > 0) {
        bool isOldText = false;
        list = [NewFromBytes({static_cast<const char*>([data bytes]), [data length]}, options,
                             found, isOldText, problem) autorelease];
        if (isOldText) {
            problem = "The data is no property list in the old text format.";
            @try {
                list = [self gnustep_propertyListWithData:data
                                                  options:options
                                                   format:&found
                                                    error:nullptr];
            } @catch (NSException* exception) {
                list = nil;
            }
        }
    }
    if (list == nil) {
        SetError(error, NSPropertyListReadCorruptError, kReadingFailed, problem);
    } else if (format != nullptr) {
        *format = found;
    }
    return list;
}

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
