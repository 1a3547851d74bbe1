#include "crypto/CocoaStrings.h"

#include <vector>

#include "crypto/StringUtils.h"

namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool IsHighHalf(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowHalf(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::u16string Units(NSString* text) {
    std::vector<unichar> characters([text length]);
    [text getCharacters:characters.data() range:NSMakeRange(0, characters.size())];
    return std::u16string(characters.begin(), characters.end());
}

void ReplaceUnpairedHalves(std::u16string& units) {
    for (size_t at = 0; at < units.size(); ++at) {
        if (IsHighHalf(units[at]) && at + 1 < units.size() && IsLowHalf(units[at + 1])) {
            ++at;
        } else if (IsHighHalf(units[at]) || IsLowHalf(units[at])) {
            units[at] = kReplacement;
        }
    }
}

}  // namespace

NSString* CocoaString(const std::string& text) {
    return [NSString stringWithCString:text.c_str() encoding:[NSString defaultCStringEncoding]];
}

NSString* CocoaStringFromUtf8(const std::string& text) {
    return [NSString stringWithUTF8String:text.c_str()];
}

std::string Utf8Bytes(NSString* text) {
    std::u16string units = Units(text);
    ReplaceUnpairedHalves(units);
    return StringUtils::ConvertU16StringtoU8String(units);
}
