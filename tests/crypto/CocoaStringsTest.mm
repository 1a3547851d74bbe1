#include "crypto/CocoaStrings.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace {

// Unit by unit: GNUstep makes no string at once of what is not UTF-16.
std::string BytesOf(std::initializer_list<unichar> units) {
    @autoreleasepool {
        NSMutableString* text = [NSMutableString string];
        for (const unichar unit : units) {
            [text appendFormat:@"%C", unit];
        }
        EXPECT_EQ([text length], units.size());
        return Utf8Bytes(text);
    }
}

TEST(Utf8BytesTest, KeepsEveryCharacter) {
    EXPECT_EQ(BytesOf({'a', 0xE9, 0x20AC, 0xD83D, 0xDE00, 'z'}), "a\u00E9\u20AC\U0001F600z");
    EXPECT_EQ(BytesOf({'a', 0, 0xFEFF, 'b'}), std::string("a\0\uFEFFb", 6));
    EXPECT_EQ(BytesOf({0xD800, 0xDC00, 0xDBFF, 0xDFFF}), "\U00010000\U0010FFFF");
    EXPECT_EQ(BytesOf({0xD7FF, 0xE000}), "\uD7FF\uE000");
}

TEST(Utf8BytesTest, ReplacesEachUnpairedHalf) {
    EXPECT_EQ(BytesOf({0xD83D}), "\uFFFD");
    EXPECT_EQ(BytesOf({0xDE00}), "\uFFFD");
    EXPECT_EQ(BytesOf({'a', 0xD83D, 'b', 0xDE00, 'c'}), "a\uFFFDb\uFFFDc");
    EXPECT_EQ(BytesOf({0xDE00, 0xD83D}), "\uFFFD\uFFFD");
    EXPECT_EQ(BytesOf({0xD83D, 0xD83D, 0xDE00, 0xDE00}), "\uFFFD\U0001F600\uFFFD");
}

TEST(Utf8BytesTest, GivesNothingForNil) {
    EXPECT_EQ(Utf8Bytes(nil), "");
    EXPECT_EQ(Utf8Bytes(@""), "");
}

TEST(CocoaStringFromUtf8Test, ReadsUpToTheFirstNulAndRefusesWhatIsNotUtf8) {
    @autoreleasepool {
        EXPECT_EQ(Utf8Bytes(CocoaStringFromUtf8(std::string("\u20AC\0b", 5))), "\u20AC");
        EXPECT_EQ(CocoaStringFromUtf8("\xE2\x82"), nil);
    }
}

}  // namespace
