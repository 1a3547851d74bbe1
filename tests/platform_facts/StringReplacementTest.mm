// Literal replacement in long texts.
#include <gtest/gtest.h>

#include <chrono>
#include <random>

#include "tests/support/ErrorChecks.h"

namespace {

NSString* FromCharacters(const std::u16string& text) {
    return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(text.data())
                                   length:text.size()];
}

std::u16string ToCharacters(NSString* text) {
    std::u16string characters([text length], u'\0');
    [text getCharacters:reinterpret_cast<unichar*>(characters.data())
                  range:NSMakeRange(0, [text length])];
    return characters;
}

std::u16string Expected(std::u16string text, const std::u16string& part,
                        const std::u16string& replacement, NSRange range) {
    size_t end = NSMaxRange(range);
    for (size_t at = range.location;
         (at = text.find(part, at)) != std::u16string::npos && at + part.size() <= end;
         at += replacement.size()) {
        text.replace(at, part.size(), replacement);
        end = end + replacement.size() - part.size();
    }
    return text;
}

NSString* Replaced(NSString* text, NSString* part, NSString* replacement) {
    return [text stringByReplacingOccurrencesOfString:part
                                           withString:replacement
                                              options:NSLiteralSearch
                                                range:NSMakeRange(0, [text length])];
}

// Whole characters only: GNUstep makes no string that holds half a surrogate pair.
std::u16string Random(std::mt19937& random, size_t longest) {
    static const std::u16string kCharacters[] = {u"a",      u"b", u"a", u"é",
                                                 u"\u0301", u"😀", u"x", std::u16string(1, 0)};
    std::u16string text;
    for (size_t count = random() % (longest + 1); count > 0; --count) {
        text += kCharacters[random() % std::size(kCharacters)];
    }
    return text;
}

TEST(StringReplacement, IsWhatAPlainSearchGivesForAnyTextAndRange) {
    std::mt19937 random(20240305);
    for (int round = 0; round < 20000; ++round) {
        @autoreleasepool {
            const std::u16string text = Random(random, 40);
            std::u16string part = Random(random, 3);
            part += u'a';
            const std::u16string replacement = Random(random, 4);
            NSRange range = NSMakeRange(random() % (text.size() + 1), 0);
            range.length = random() % (text.size() - range.location + 1);
            NSString* result = [FromCharacters(text)
                stringByReplacingOccurrencesOfString:FromCharacters(part)
                                          withString:FromCharacters(replacement)
                                             options:NSLiteralSearch
                                               range:range];
            ASSERT_TRUE(ToCharacters(result) == Expected(text, part, replacement, range))
                << "round " << round;
        }
    }
}

TEST(StringReplacement, FindsWhatLiesAcrossBlocks) {
    @autoreleasepool {
        for (size_t before = 65536 - 12; before <= 65536 + 1; ++before) {
            const std::u16string text =
                std::u16string(before, u'x') + u"needle" + std::u16string(70000, u'x');
            EXPECT_TRUE(ToCharacters(Replaced(FromCharacters(text), @"needle", @"pin")) ==
                        std::u16string(before, u'x') + u"pin" + std::u16string(70000, u'x'))
                << before;
        }
        // Longer than a block.
        const std::u16string part(200000, u'y');
        EXPECT_TRUE(ToCharacters(Replaced(FromCharacters(u"a" + part + u"b"), FromCharacters(part),
                                          @"")) == u"ab");
    }
}

TEST(StringReplacement, OccurrencesDoNotOverlap) {
    @autoreleasepool {
        EXPECT_EQ(Text(Replaced(@"aaaaa", @"aa", @"b")), "bba");
        EXPECT_EQ(Text(Replaced(@"aa", @"a", @"aa")), "aaaa");
    }
}

TEST(StringReplacement, KeepsTheTextWithoutAnOccurrence) {
    @autoreleasepool {
        EXPECT_EQ(Text(Replaced(@"text", @"other", @"x")), "text");
        EXPECT_EQ(Text(Replaced(@"text", @"", @"x")), "text");
        EXPECT_EQ(Text(Replaced(@"", @"other", @"x")), "");
    }
}

TEST(StringReplacement, OtherOptionsAreHonoured) {
    @autoreleasepool {
        EXPECT_EQ(Text([@"aAa" stringByReplacingOccurrencesOfString:@"A"
                                                         withString:@"b"
                                                            options:NSCaseInsensitiveSearch
                                                              range:NSMakeRange(0, 3)]),
                  "bbb");
        EXPECT_EQ(Text([@"aAa" stringByReplacingOccurrencesOfString:@"A" withString:@"b"]), "aba");
    }
}

TEST(StringReplacement, ARangeBeyondTheTextRaises) {
    @autoreleasepool {
        bool raised = false;
        @try {
            [@"text" stringByReplacingOccurrencesOfString:@"t"
                                               withString:@"x"
                                                  options:NSLiteralSearch
                                                    range:NSMakeRange(2, 3)];
        } @catch (NSException*) {
            raised = true;
        }
        EXPECT_TRUE(raised);
    }
}

// GNUstep's own takes minutes.
TEST(StringReplacement, TakesTheTimeOfOneWalkWhateverTheNumberOfOccurrences) {
    @autoreleasepool {
        std::string text;
        std::string replaced;
        for (int i = 0; i < 100000; ++i) {
            text += std::string(90, '.') + "\"key\": true";
            replaced += std::string(90, '.') + "\"key\": false";
        }
        NSString* before = Text(text);
        const auto start = std::chrono::steady_clock::now();
        NSString* after = Replaced(before, @"\"key\": true", @"\"key\": false");
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
        EXPECT_TRUE(Text(after) == replaced);
    }
}

}  // namespace
