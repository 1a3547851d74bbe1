// NSData's files: GNUstep leaves the error slot alone on failure, prints to standard error instead,
// and lacks the reading methods with options. The options ask for speed (mapping, no caching)
// except for atomic writing and for not overwriting.
#include <string>

#include "linux/corrections/CocoaErrors.h"
#include "linux/corrections/FileContents.h"
#include "linux/corrections/FileSystemPath.h"

namespace {

WriteMode ModeOf(NSUInteger options) {
    if ((options & NSDataWritingWithoutOverwriting) != 0) {
        return WriteMode::InPlaceNew;
    }
    return (options & NSDataWritingAtomic) != 0 ? WriteMode::Atomic : WriteMode::InPlace;
}

}  // namespace

@implementation NSData (AppleFiles)

+ (id)dataWithContentsOfFile:(NSString*)path
                     options:(NSDataReadingOptions)options
                       error:(NSError**)error {
    return [[[self alloc] initWithContentsOfFile:path options:options error:error] autorelease];
}

- (id)mac_initWithContentsOfFile:(NSString*)path {
    return [self initWithContentsOfFile:path options:0 error:nullptr];
}

- (id)initWithContentsOfFile:(NSString*)path
                     options:(NSDataReadingOptions)options
                       error:(NSError**)error {
    (void)options;
    std::string bytes;
    if (!ReadFile(path, bytes, error)) {
        [self release];
        return nil;
    }
    return [self initWithBytes:bytes.data() length:bytes.size()];
}

- (BOOL)mac_writeToFile:(NSString*)path atomically:(BOOL)atomically {
    return [self writeToFile:path options:atomically ? NSDataWritingAtomic : 0 error:nullptr];
}

- (BOOL)mac_writeToFile:(NSString*)path options:(NSUInteger)options error:(NSError**)error {
    return WriteFile(path, self, ModeOf(options), error);
}

@end
