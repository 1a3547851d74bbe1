#pragma once

#include <Foundation/Foundation.h>

#include <string>

/// A Cocoa string of these units, halves of surrogate pairs that stand alone among them.
inline NSString* TextOf(const std::u16string& units) {
    // Unit by unit: GNUstep makes no string at once of what is not UTF-16.
    NSMutableString* text = [NSMutableString string];
    for (const char16_t unit : units) {
        [text appendFormat:@"%C", static_cast<unichar>(unit)];
    }
    return text;
}
