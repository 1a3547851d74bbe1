// NSString's files: GNUstep leaves the error slot alone on failure, prints to standard error, and
// drops a byte-order mark from UTF-8. Apple keeps the mark as a character, so that a text is
// written back as it was read.
#include <string>
#include <string_view>

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/FileContents.h"

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

bool StartsWith(std::string_view bytes, std::string_view start) {
    return bytes.substr(0, start.size()) == start;
}

/// Initializes `string` with the bytes; nil when they do not stand for a text in that encoding.
/// Makes no copy of the text on the way: files may be large.
id InitDecoded(NSString* string, std::string_view bytes, NSStringEncoding encoding) {
    NSString* marks = @"";
    while (encoding == NSUTF8StringEncoding && StartsWith(bytes, kUtf8Mark)) {
        marks = [@"\uFEFF" stringByAppendingString:marks];
        bytes.remove_prefix(kUtf8Mark.size());
    }
    if ([marks length] == 0) {
        return [string initWithBytes:bytes.data() length:bytes.size() encoding:encoding];
    }
    NSString* text = [[[NSString alloc] initWithBytes:bytes.data()
                                               length:bytes.size()
                                             encoding:encoding] autorelease];
    if (text == nil) {
        [string release];
        return nil;
    }
    return [string initWithString:[marks stringByAppendingString:text]];
}

NSStringEncoding EncodingByMark(std::string_view bytes) {
    if (StartsWith(bytes, "\xFF\xFE") || StartsWith(bytes, "\xFE\xFF")) {
        return NSUnicodeStringEncoding;
    }
    return NSUTF8StringEncoding;
}

}  // namespace

@implementation NSString (AppleFiles)

- (id)mac_initWithContentsOfFile:(NSString*)path {
    return [self initWithContentsOfFile:path usedEncoding:nullptr error:nullptr];
}

- (id)mac_initWithContentsOfFile:(NSString*)path
                    encoding:(NSStringEncoding)encoding
                       error:(NSError**)error {
    std::string bytes;
    if (!ReadFile(path, bytes, error)) {
        [self release];
        return nil;
    }
    self = InitDecoded(self, bytes, encoding);
    if (self == nil) {
        Fail(error,
             FileError(NSFileReadInapplicableStringEncodingError, ReadingFailed(path), path, 0));
    }
    return self;
}

- (id)mac_initWithContentsOfFile:(NSString*)path
                usedEncoding:(NSStringEncoding*)usedEncoding
                       error:(NSError**)error {
    std::string bytes;
    if (!ReadFile(path, bytes, error)) {
        [self release];
        return nil;
    }
    const NSStringEncoding encoding = EncodingByMark(bytes);
    self = InitDecoded(self, bytes, encoding);
    if (self == nil) {
        Fail(error, FileError(NSFileReadUnknownStringEncodingError, ReadingFailed(path), path, 0));
    } else if (usedEncoding != nullptr) {
        *usedEncoding = encoding;
    }
    return self;
}

- (BOOL)mac_writeToFile:(NSString*)path atomically:(BOOL)atomically {
    return [self writeToFile:path
                  atomically:atomically
                    encoding:NSUTF8StringEncoding
                       error:nullptr];
}

- (BOOL)mac_writeToFile:(NSString*)path
         atomically:(BOOL)atomically
           encoding:(NSStringEncoding)encoding
              error:(NSError**)error {
    NSData* bytes = [self dataUsingEncoding:encoding];
    if (bytes == nil) {
        return Fail(error, FileError(NSFileWriteInapplicableStringEncodingError,
                                     WritingFailed(path), path, 0));
    }
    return WriteFile(path, bytes, atomically ? WriteMode::Atomic : WriteMode::InPlace, error);
}

@end
