// GNUstep's search works out the whole rest of the text for every occurrence, and its replacement
// moves it: quadratic, hours for a text of 100 MB. A literal replacement walks the text once here.
// With other options (case, direction) it is GNUstep's.
#include <Foundation/Foundation.h>

#include <string>

namespace {

std::u16string Characters(NSString* text) {
    std::u16string characters([text length], u'\0');
    [text getCharacters:reinterpret_cast<unichar*>(characters.data())
                  range:NSMakeRange(0, characters.size())];
    return characters;
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
    const std::u16string text = Characters(self);
    const std::u16string wanted = Characters(target);
    const std::u16string substitute = Characters(replacement);
    const std::u16string_view searched(text.data(), NSMaxRange(range));
    std::u16string result;
    size_t done = 0;
    for (size_t at = range.location; (at = searched.find(wanted, at)) != searched.npos;) {
        result.append(text, done, at - done).append(substitute);
        at += wanted.size();
        done = at;
    }
    result.append(text, done);
    return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(result.data())
                                   length:result.size()];
}

@end
