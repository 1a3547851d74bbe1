#include "crypto/StringUtilsBridge.h"

#include <gtest/gtest.h>

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

TEST(CocoaToWide, GivesNothingForAnUnpairedSurrogate) {
    @autoreleasepool {
        const unichar characters[] = {'a', 0xD800, 'b'};
        NSString* text = [NSString stringWithCharacters:characters length:3];
        EXPECT_EQ([StringUtilsBridge ConvertNSStringToWString:text], L"");
    }
}

TEST(CocoaToWide, GivesNothingForWhatTheLocaleRejects) {
    @autoreleasepool {
        NSString* text = [NSString stringWithUTF8String:"caf\u00E9"];
        EXPECT_EQ([StringUtilsBridge ConvertNSStringToWString:text], L"");
    }
}
