// U+FEFF is a character like any other inside a string. GNUstep takes it for a byte-order mark
// whenever a string that begins with it is copied or changed, drops it, and then runs past the end
// of the shortened text. It drops exactly one, so it is given one more to drop.
#include <Foundation/Foundation.h>

#include <algorithm>

namespace {

constexpr unichar kMark = 0xFEFF;
constexpr unichar kSwappedMark = 0xFFFE;

bool StartsWithMark(const unichar* characters, NSUInteger length) {
    return length > 0 && (characters[0] == kMark || characters[0] == kSwappedMark);
}

id InitWithMarked(NSString* string, const unichar* characters, NSUInteger length) {
    // Given as the string's own bytes: a mark is dropped twice from bytes that it must copy.
    auto* marked =
        static_cast<unichar*>(NSZoneMalloc(NSDefaultMallocZone(), (length + 1) * sizeof(unichar)));
    marked[0] = kMark;
    std::copy_n(characters, length, marked + 1);
    return [string initWithBytesNoCopy:marked
                                length:(length + 1) * sizeof(unichar)
                              encoding:NSUnicodeStringEncoding
                          freeWhenDone:YES];
}

}  // namespace

@implementation NSString (LeadingMark)

- (id)mac_initWithCharacters:(const unichar*)characters length:(NSUInteger)length {
    if (StartsWithMark(characters, length)) {
        return InitWithMarked(self, characters, length);
    }
    return [self initWithBytes:characters
                        length:length * sizeof(unichar)
                      encoding:NSUnicodeStringEncoding];
}

- (id)mac_initWithCharactersNoCopy:(unichar*)characters
                            length:(NSUInteger)length
                      freeWhenDone:(BOOL)free {
    if (!StartsWithMark(characters, length)) {
        return [self initWithBytesNoCopy:characters
                                  length:length * sizeof(unichar)
                                encoding:NSUnicodeStringEncoding
                            freeWhenDone:free];
    }
    id result = InitWithMarked(self, characters, length);
    if (free) {
        NSZoneFree(NSZoneFromPointer(characters), characters);
    }
    return result;
}

@end
