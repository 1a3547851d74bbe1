// What the program meets of strings: letters, comparisons, encodings, paths, and how the environment prints.
#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"

namespace {

class Strings : public testing::Test {
  protected:
    ~Strings() override { [pool_ release]; }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(Strings, LowerCaseFollowsUnicode) {
    const struct {
        NSString* text;
        const char* lowered;
    } texts[] = {{@"Aa É", "aa é"}, {@"ΟΔΟΣ ΣΑΣ.", "οδος σας."},
                 {@"İ", "i\u0307"}, {@"𐐀", "𐐨"},
                 {@"", ""},         {@"ẞ", "ß"}};
    for (const auto& [text, lowered] : texts) {
        EXPECT_EQ(Text([text lowercaseString]), lowered);
        EXPECT_EQ(Text([[NSMutableString stringWithString:text] lowercaseString]), lowered);
        EXPECT_EQ(Text([[NSString stringWithFormat:@"%@", text] lowercaseString]), lowered);
    }
    const unichar characters[] = {'A', 0, 'B', 0};
    NSString* lowered = [[NSString stringWithCharacters:characters length:4] lowercaseString];
    EXPECT_EQ([lowered length], 4U);
    EXPECT_EQ([lowered characterAtIndex:2], 'b');
}

TEST_F(Strings, ComposedAndDecomposedLettersDiffer) {
    EXPECT_FALSE([@"caf\u00E9" isEqual:@"cafe\u0301"]);
    EXPECT_FALSE([@"caf\u00E9" isEqualToString:@"cafe\u0301"]);
    EXPECT_FALSE([@"caf\u00E9x" hasPrefix:@"cafe\u0301"]);
    EXPECT_TRUE([@"cafe\u0301" hasPrefix:@"cafe"]);
}

TEST_F(Strings, ATextBeforeACombiningMarkIsFoundByALiteralSearchOnly) {
    NSString* text = @"{\"key\"\u0301: 1}";
    EXPECT_EQ([text rangeOfString:@"\"key\""].location, static_cast<NSUInteger>(NSNotFound));
    EXPECT_EQ([text rangeOfString:@"\"key\"" options:NSLiteralSearch].location, 1U);
}

TEST_F(Strings, CStringsAreMacRomanByDefault) {
    EXPECT_EQ([NSString defaultCStringEncoding],
              static_cast<NSStringEncoding>(NSMacOSRomanStringEncoding));
    EXPECT_EQ(Text([NSString stringWithCString:"\x9F \xDB \xA9"
                                      encoding:[NSString defaultCStringEncoding]]),
              "ü € ©");
    EXPECT_STREQ([@"ü" cStringUsingEncoding:[NSString defaultCStringEncoding]], "\x9F");
}

TEST_F(Strings, NamesOfFilesAreUtf8) {
    NSString* name = @"/tmp/ü €";
    EXPECT_STREQ([name fileSystemRepresentation], "/tmp/ü €");
    NSFileManager* files = [NSFileManager defaultManager];
    EXPECT_EQ(Text([files stringWithFileSystemRepresentation:"/tmp/ü" length:7]), "/tmp/ü");
}

TEST_F(Strings, OnlySlashesDividePaths) {
    NSString* odd = @"C:\\..\\..\\x:y";
    NSString* path = [@"/Users/a\\b" stringByAppendingPathComponent:odd];
    EXPECT_EQ(Text(path), "/Users/a\\b/C:\\..\\..\\x:y");
    EXPECT_EQ(Text([path lastPathComponent]), Text(odd));
    EXPECT_EQ(Text([path stringByDeletingLastPathComponent]), "/Users/a\\b");
    EXPECT_EQ([[path pathComponents] count], 4U);
    EXPECT_FALSE([@"C:\\x" isAbsolutePath]);
}

TEST_F(Strings, DictionariesPrintAnEntryALine) {
    NSDictionary* dictionary = @{@"b" : @"plain", @"a b" : @"two words"};
    EXPECT_EQ(Text([NSString stringWithFormat:@"%@", dictionary]),
              "{\n    \"a b\" = \"two words\";\n    b = plain;\n}");
    EXPECT_EQ(Text([NSString stringWithFormat:@"%@", @{}]), "{\n}");
}

}  // namespace
