#include "crypto/StringUtilsBridge.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <vector>

namespace {

// The process's locale while it lives.
class Locale {
  public:
    explicit Locale(const char* name) : before(std::setlocale(LC_ALL, nullptr)) {
        EXPECT_NE(std::setlocale(LC_ALL, name), nullptr);
    }
    ~Locale() { std::setlocale(LC_ALL, before.c_str()); }
    Locale(const Locale&) = delete;
    Locale& operator=(const Locale&) = delete;

  private:
    std::string before;
};

}  // namespace

TEST(WideToCocoa, KeepsAscii) {
    @autoreleasepool {
        EXPECT_TRUE([[StringUtilsBridge ConvertWStringToNSString:L"//Users//Shared"]
            isEqualToString:@"//Users//Shared"]);
        EXPECT_TRUE([[StringUtilsBridge ConvertWStringToNSString:L""] isEqualToString:@""]);
    }
}

TEST(WideToCocoa, StopsAtTheFirstNul) {
    @autoreleasepool {
        const std::wstring text(L"a\0b", 3);
        EXPECT_TRUE([[StringUtilsBridge ConvertWStringToNSString:text] isEqualToString:@"a"]);
    }
}

TEST(WideToCocoa, GivesAnEmptyStringForWhatTheLocaleLacks) {
    @autoreleasepool {
        EXPECT_TRUE([[StringUtilsBridge ConvertWStringToNSString:L"a\u0416"] isEqualToString:@""]);
    }
}

TEST(CocoaToWide, KeepsAscii) {
    @autoreleasepool {
        EXPECT_EQ([StringUtilsBridge ConvertNSStringToWString:@"//Users//Shared"],
                  L"//Users//Shared");
        EXPECT_EQ([StringUtilsBridge ConvertNSStringToWString:@""], L"");
    }
}

TEST(CocoaToWide, StopsAtTheFirstNul) {
    @autoreleasepool {
        const unichar characters[] = {'a', 0, 'b'};
        NSString* text = [NSString stringWithCharacters:characters length:3];
        EXPECT_EQ([StringUtilsBridge ConvertNSStringToWString:text], L"a");
    }
}

TEST(CocoaToWide, GivesNothingForNil) {
    EXPECT_EQ([StringUtilsBridge ConvertNSStringToWString:nil], L"");
}

// Built from single characters: GNUstep makes no string of a half in any other way.
NSString* TextOf(const std::vector<unichar>& units) {
    NSMutableString* text = [NSMutableString string];
    for (const unichar unit : units) {
        [text appendFormat:@"%C", unit];
    }
    return text;
}

// In a locale that has every character, so that it can be seen.
TEST(CocoaToWide, GivesAReplacementForAnUnpairedSurrogate) {
    const Locale utf8("C.UTF-8");
    @autoreleasepool {
        EXPECT_EQ([StringUtilsBridge ConvertNSStringToWString:TextOf({'a', 0xD83D, 'b'})],
                  L"a\uFFFDb");
        EXPECT_EQ([StringUtilsBridge ConvertNSStringToWString:TextOf({'a', 0xD83D, 0xDE00, 'b'})],
                  L"a\U0001F600b");
    }
}

TEST(CocoaToWide, GivesACharacterAByteOfTheUtf8Form) {
    @autoreleasepool {
        NSString* text = [NSString stringWithUTF8String:"caf\u00E9"];
        EXPECT_EQ([StringUtilsBridge ConvertNSStringToWString:text], L"caf\u00C3\u00A9");
    }
}
