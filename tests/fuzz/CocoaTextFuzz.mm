// Byte strings to Cocoa strings and back, against glibc's iconv.
#include <cstdint>
#include <string>

#include "crypto/CocoaStrings.h"
#include "crypto/StringUtils.h"
#include "crypto/StringUtilsBridge.h"
#include "crypto/Utf8.h"
#include "tests/fuzz/Iconv.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/Units.h"

namespace {

void CheckUtf8(const std::string& text) {
    NSString* cocoa = CocoaStringFromUtf8(text);
    REQUIRE((cocoa != nil) == IsUtf8(text));
    REQUIRE(cocoa == nil || Utf8Bytes(cocoa) == text);
}

// Replaces every half that stands alone.
std::u16string Whole(const std::u16string& units) {
    std::u16string whole;
    for (const char16_t unit : units) {
        const bool low = (unit & 0xFC00) == 0xDC00;
        const bool behindHigh = !whole.empty() && (whole.back() & 0xFC00) == 0xD800;
        if (behindHigh && !low) {
            whole.back() = 0xFFFD;
        }
        whole += low && !behindHigh ? u'\xFFFD' : unit;
    }
    if (!whole.empty() && (whole.back() & 0xFC00) == 0xD800) {
        whole.back() = 0xFFFD;
    }
    return whole;
}

void CheckUtf16(const std::string& bytes) {
    std::u16string units(bytes.size() / 2, u'\0');
    bytes.copy(reinterpret_cast<char*>(&units[0]), 2 * units.size());
    std::string expected;
    REQUIRE(Convert("UTF-8", "UTF-16LE", Whole(units), expected));
    REQUIRE(Utf8Bytes(TextOf(units)) == expected);
}

// The default C-string encoding gives every byte a character; two of them keep an older form here.
void CheckDefaultEncoding(const std::string& text) {
    const std::string lower = StringUtils::LowerCase(text);
    REQUIRE(IsUtf8(lower));
    NSString* cocoa =
        [StringUtilsBridge ConvertWStringToNSString:StringUtils::ConvertStringToWString(text)];
    REQUIRE(cocoa != nil && ([cocoa length] == 0) == text.empty());
    std::string utf8;
    REQUIRE(Convert("UTF-8", "MACINTOSH", text, utf8));
    const bool hasOlderForm = text.find_first_of("\xC6\xDB\xF0\xBD") != std::string::npos;
    REQUIRE(hasOlderForm || Utf8Bytes(cocoa) == utf8);
    REQUIRE(hasOlderForm || StringUtils::ConvertWStringToString(
                                [StringUtilsBridge ConvertNSStringToWString:cocoa]) == utf8);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    @autoreleasepool {
        const std::string bytes(reinterpret_cast<const char*>(data), size);
        const std::string text = bytes.substr(0, bytes.find('\0'));
        CheckUtf8(text);
        CheckUtf16(bytes);
        CheckDefaultEncoding(text);
    }
    return 0;
}
