#pragma once

#include <Foundation/Foundation.h>

#include <string>

/// A Cocoa string of these units, halves of surrogate pairs that stand alone among them.
inline NSMutableString* TextOf(const std::u16string& units) {
    NSMutableString* text = [NSMutableString string];
    std::size_t from = 0;
    for (std::size_t at = 0; at <= units.size(); ++at) {
        const bool isHalf = at < units.size() && (units[at] & 0xF800) == 0xD800;
        if (!isHalf && at < units.size()) {
            continue;
        }
        [text appendString:[NSString
                               stringWithCharacters:reinterpret_cast<const unichar*>(&units[from])
                                             length:at - from]];
        from = at + 1;
        if (isHalf) {
            // One by one: GNUstep makes no string at once of what is not UTF-16.
            [text appendFormat:@"%C", static_cast<unichar>(units[at])];
        }
    }
    return text;
}
