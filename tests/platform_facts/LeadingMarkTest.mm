#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"

namespace {

/// Four characters, the first one U+FEFF.
NSString* Marked() {
    return [@"\uFEFF" stringByAppendingString:@"abc"];
}

void ExpectMarked(NSString* text, const std::string& rest) {
    EXPECT_EQ(Text(text), "\xEF\xBB\xBF" + rest);
    EXPECT_EQ([text characterAtIndex:0], 0xFEFF);
    EXPECT_EQ([text length], 1 + rest.size());
}

TEST(LeadingMark, SurvivesCopies) {
    @autoreleasepool {
        ExpectMarked(Marked(), "abc");
        ExpectMarked([[Marked() copy] autorelease], "abc");
        ExpectMarked([[Marked() mutableCopy] autorelease], "abc");
        ExpectMarked([[[[Marked() mutableCopy] autorelease] mutableCopy] autorelease], "abc");
        ExpectMarked([[[[Marked() mutableCopy] autorelease] copy] autorelease], "abc");
        ExpectMarked([NSString stringWithString:Marked()], "abc");
        ExpectMarked([NSMutableString stringWithString:Marked()], "abc");
        ExpectMarked([NSString stringWithFormat:@"%@", Marked()], "abc");
        ExpectMarked([[@"\uFEFF" mutableCopy] autorelease], "");
    }
}

TEST(LeadingMark, SurvivesChanges) {
    @autoreleasepool {
        NSString* replaced = [Marked() stringByReplacingOccurrencesOfString:@"b"
                                                                 withString:@"long"];
        ExpectMarked(replaced, "alongc");
        ExpectMarked(
            [Marked() stringByReplacingCharactersInRange:NSMakeRange(3, 1) withString:@"x"], "abx");
        ExpectMarked([Marked() substringToIndex:2], "a");
        ExpectMarked([Marked() substringWithRange:NSMakeRange(0, 3)], "ab");
        ExpectMarked([[Marked() componentsSeparatedByString:@"b"] objectAtIndex:0], "a");
        ExpectMarked([Marked() stringByAppendingFormat:@"%d", 7], "abc7");
        ExpectMarked([Marked() uppercaseString], "ABC");
        NSMutableString* text = [NSMutableString stringWithString:Marked()];
        [text replaceOccurrencesOfString:@"a"
                              withString:@""
                                 options:0
                                   range:NSMakeRange(0, [text length])];
        [text appendString:@"d"];
        ExpectMarked(text, "bcd");
        [text insertString:@"\uFEFF" atIndex:0];
        EXPECT_EQ(Text(text), "\xEF\xBB\xBF\xEF\xBB\xBF"
                              "bcd");
    }
}

TEST(LeadingMark, OtherCharactersAreTakenAsTheyAre) {
    @autoreleasepool {
        const unichar swapped[] = {0xFFFE, 'a', 0xFEFF};
        EXPECT_EQ(Text([NSString stringWithCharacters:swapped length:3]), "\xEF\xBF\xBE"
                                                                          "a\xEF\xBB\xBF");
        const unichar plain[] = {'a', 0, 0xFC};
        EXPECT_EQ([[NSMutableString stringWithCharacters:plain length:3] length], 3U);
        EXPECT_EQ(Text([NSString stringWithCharacters:plain length:0]), "");
        EXPECT_EQ(Text([NSString stringWithCharacters:nullptr length:0]), "");
    }
}

}  // namespace
