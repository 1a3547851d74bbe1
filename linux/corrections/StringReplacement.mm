// GNUstep's search works out the whole rest of the text for every occurrence, and its replacement
// moves it: quadratic, hours for a text of 100 MB. A literal replacement walks the text once here,
// and makes no copy of it but the result. With other options (case, direction) it is GNUstep's.
#include <Foundation/Foundation.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr NSUInteger kBlock = 64 * 1024;

std::vector<unichar> Characters(NSString* text, NSUInteger location, NSUInteger length) {
    std::vector<unichar> characters(length);
    [text getCharacters:characters.data() range:NSMakeRange(location, length)];
    return characters;
}

// The first occurrence at or behind `from`; the length of the text when there is none.
size_t Find(const std::vector<unichar>& text, size_t from, const std::vector<unichar>& wanted) {
    const char* const bytes = reinterpret_cast<const char*>(text.data());
    const size_t end = text.size() * sizeof(unichar);
    for (size_t at = from * sizeof(unichar);;) {
        const void* found =
            memmem(bytes + at, end - at, wanted.data(), wanted.size() * sizeof(unichar));
        if (found == nullptr) {
            return text.size();
        }
        at = static_cast<size_t>(static_cast<const char*>(found) - bytes);
        if (at % sizeof(unichar) == 0) {
            return at / sizeof(unichar);
        }
        ++at;  // it began inside a character
    }
}

// Where the target stands in that range of the text, from left to right, without overlaps.
std::vector<NSUInteger> Places(NSString* text, NSString* target, NSRange range) {
    const std::vector<unichar> wanted = Characters(target, 0, [target length]);
    const NSUInteger blockLength = std::max<NSUInteger>(kBlock, 2 * wanted.size());
    const NSUInteger end = NSMaxRange(range);
    std::vector<NSUInteger> places;
    NSUInteger start = range.location;
    while (end - start >= wanted.size()) {
        const std::vector<unichar> block =
            Characters(text, start, std::min(blockLength, end - start));
        size_t searched = 0;
        for (size_t found; (found = Find(block, searched, wanted)) != block.size();) {
            places.push_back(start + found);
            searched = found + wanted.size();
        }
        // The next block begins early enough for an occurrence that this one cuts off.
        start += std::max<NSUInteger>(searched, block.size() - wanted.size() + 1);
    }
    return places;
}

NSString* LiteralReplacement(NSString* text, NSString* target, NSString* replacement,
                             NSRange range) {
    const std::vector<NSUInteger> places = Places(text, target, range);
    if (places.empty()) {
        return [[text copy] autorelease];
    }
    const NSUInteger kept = [text length] - places.size() * [target length];
    const NSUInteger length = kept + places.size() * [replacement length];
    unichar* const characters = static_cast<unichar*>(
        NSZoneMalloc(NSDefaultMallocZone(), std::max<NSUInteger>(length, 1) * sizeof(unichar)));
    unichar* out = characters;
    NSUInteger done = 0;
    for (const NSUInteger place : places) {
        [text getCharacters:out range:NSMakeRange(done, place - done)];
        out += place - done;
        [replacement getCharacters:out range:NSMakeRange(0, [replacement length])];
        out += [replacement length];
        done = place + [target length];
    }
    [text getCharacters:out range:NSMakeRange(done, [text length] - done)];
    return [[[NSString alloc] initWithCharactersNoCopy:characters length:length
                                          freeWhenDone:YES] autorelease];
}

}  // namespace

@implementation NSString (Replacement)

- (NSString*)mac_stringByReplacingOccurrencesOfString:(NSString*)target
                                           withString:(NSString*)replacement
                                              options:(NSStringCompareOptions)options
                                                range:(NSRange)range {
    const NSUInteger length = [self length];
    if (options != NSLiteralSearch || [target length] == 0 || replacement == nil ||
        range.location > length || range.length > length - range.location) {
        return [self mac_stringByReplacingOccurrencesOfString:target
                                                   withString:replacement
                                                      options:options
                                                        range:range];
    }
    return LiteralReplacement(self, target, replacement, range);
}

@end
