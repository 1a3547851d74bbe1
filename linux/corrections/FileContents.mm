// Data and text as files: GNUstep leaves the error slot alone on failure, prints to standard error
// instead, and reads text by other rules. What is not written atomically is left to it: the program
// writes nothing so.
#include "linux/corrections/FileContents.h"

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/FileBytes.h"
#include "linux/corrections/FileSystemPath.h"

namespace {

const std::string kReplacementCharacter = "\xEF\xBF\xBD";
constexpr char kTolerated = '\xA9';

BOOL WriteFile(NSString* path, NSData* bytes, NSError** error) {
    std::string file;
    if (!FileSystemPath(path, file)) {
        return Fail(error, FileAction::Write, kInvalidName, path);
    }
    const int posixError = WriteAtomically(file, [bytes bytes], [bytes length]);
    return posixError == 0 || Fail(error, FileAction::Write, posixError, path);
}

/// How many bytes a character has that begins so.
size_t LengthOfCharacter(char first) {
    const auto byte = static_cast<unsigned char>(first);
    return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

/// A Mac reads the byte A9, the old copyright sign, on purpose where a character should begin.
std::string Tolerated(const std::string& bytes) {
    std::string text;
    for (size_t i = 0; i < bytes.size(); i += LengthOfCharacter(bytes[i])) {
        if (bytes[i] == kTolerated) {
            text += kReplacementCharacter;
        } else {
            text.append(bytes, i, LengthOfCharacter(bytes[i]));
        }
    }
    return text;
}

}  // namespace

BOOL ReadFile(NSString* path, std::string& bytes, NSError** error) {
    std::string file;
    if (!FileSystemPath(path, file)) {
        return Fail(error, FileAction::Read, kInvalidName, path);
    }
    const int posixError = ReadFileBytes(file, bytes);
    return posixError == 0 || Fail(error, FileAction::Read, posixError, path);
}

@implementation NSData (MacFiles)

// The options ask for speed only.
+ (id)dataWithContentsOfFile:(NSString*)path
                     options:(NSDataReadingOptions)options
                       error:(NSError**)error {
    (void)options;
    std::string bytes;
    return ReadFile(path, bytes, error) ? [self dataWithBytes:bytes.data() length:bytes.size()]
                                        : nil;
}

- (id)mac_initWithContentsOfFile:(NSString*)path {
    std::string bytes;
    if (!ReadFile(path, bytes, nullptr)) {
        [self release];
        return nil;
    }
    return [self initWithBytes:bytes.data() length:bytes.size()];
}

- (BOOL)mac_writeToFile:(NSString*)path atomically:(BOOL)atomically {
    return atomically ? WriteFile(path, self, nullptr) : [self mac_writeToFile:path atomically:NO];
}

- (BOOL)mac_writeToFile:(NSString*)path options:(NSUInteger)options error:(NSError**)error {
    return (options & NSDataWritingAtomic) != 0
               ? WriteFile(path, self, error)
               : [self mac_writeToFile:path options:options error:error];
}

@end

@implementation NSString (MacFiles)

- (id)mac_initWithContentsOfFile:(NSString*)path
                        encoding:(NSStringEncoding)encoding
                           error:(NSError**)error {
    std::string bytes;
    if (!ReadFile(path, bytes, error)) {
        [self release];
        return nil;
    }
    if (encoding == NSUTF8StringEncoding && bytes.find(kTolerated) != std::string::npos) {
        bytes = Tolerated(bytes);
    }
    self = [self initWithBytes:bytes.data() length:bytes.size() encoding:encoding];
    if (self == nil) {
        FailEncoding(error, encoding, path);
    }
    return self;
}

- (BOOL)mac_writeToFile:(NSString*)path
             atomically:(BOOL)atomically
               encoding:(NSStringEncoding)encoding
                  error:(NSError**)error {
    NSData* bytes = [self dataUsingEncoding:encoding];
    return atomically && bytes != nil
               ? WriteFile(path, bytes, error)
               : [self mac_writeToFile:path atomically:atomically encoding:encoding error:error];
}

@end
