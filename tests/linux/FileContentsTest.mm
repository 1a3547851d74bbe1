#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/linux/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using namespace std::string_literals;

class FileContents : public testing::Test {
  protected:
    NSString* ReadText(const std::string& name) {
        return [NSString stringWithContentsOfFile:Text(folder_ / name)
                                         encoding:NSUTF8StringEncoding
                                            error:&error_];
    }
    NSData* ReadData(const std::string& name) {
        return [NSData dataWithContentsOfFile:Text(folder_ / name) options:0 error:&error_];
    }
    BOOL WriteText(const std::string& name, NSString* text, BOOL atomically = YES) {
        return [text writeToFile:Text(folder_ / name)
                      atomically:atomically
                        encoding:NSUTF8StringEncoding
                           error:&error_];
    }
    BOOL WriteData(const std::string& name, NSUInteger options) {
        return [[NSData dataWithBytes:"new" length:3] writeToFile:Text(folder_ / name)
                                                          options:options
                                                            error:&error_];
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
    NSError* error_ = nil;

    ~FileContents() override { [pool_ release]; }
};

TEST_F(FileContents, ATextIsWrittenBackAsItWasRead) {
    for (const std::string& bytes :
         {""s, "plain\n"s, "\xEF\xBB\xBFmarked"s, "\xEF\xBB\xBF"s, "\xEF\xBB\xBF\xEF\xBB\xBFtwice"s,
          "nul\0inside\0"s, "\0"s, "a\xEF\xBB\xBF mark inside"s, "ü € 😀 \xEF\xBF\xBF"s,
          std::string(200'000, 'x') + "ü"}) {
        folder_.Write("in", bytes);
        NSString* text = ReadText("in");
        ASSERT_NE(text, nil);
        EXPECT_TRUE(WriteText("out", text));
        EXPECT_EQ(folder_.Read("out"), bytes);
        EXPECT_TRUE(WriteText("plain", text, NO));
        EXPECT_EQ(folder_.Read("plain"), bytes);
    }
    EXPECT_EQ(error_, nil);
}

TEST_F(FileContents, AMarkIsACharacterOfTheText) {
    folder_.Write("in", "\xEF\xBB\xBFx");
    EXPECT_EQ([ReadText("in") length], 2U);
    EXPECT_EQ([ReadText("in") characterAtIndex:0], 0xFEFF);
}

TEST_F(FileContents, BytesOfAnotherEncodingAreAnError) {
    for (const std::string bytes : {"\xFF", "caf\xE9", "\xC0\x80", "\xED\xA0\x80", "\xE2\x82",
                                    "\xF4\x90\x80\x80", "\xEF\xBB\xBF\xFF"}) {
        folder_.Write("in", bytes);
        error_ = nil;
        EXPECT_EQ(ReadText("in"), nil);
        ExpectCocoaError(error_, 261, 0, folder_ / "in");
    }
}

TEST_F(FileContents, AMutableTextCanBeRead) {
    folder_.Write("in", "text");
    NSMutableString* text = [NSMutableString stringWithContentsOfFile:Text(folder_ / "in")
                                                             encoding:NSUTF8StringEncoding
                                                                error:&error_];
    [text appendString:@"!"];
    EXPECT_EQ(Text(text), "text!");
    NSMutableData* data = [NSMutableData dataWithContentsOfFile:Text(folder_ / "in")];
    [data appendBytes:"?" length:1];
    EXPECT_EQ(Text([data description]), "<74657874 3f>");
}

TEST_F(FileContents, TheEncodingIsToldByItsMark) {
    NSStringEncoding used = NSASCIIStringEncoding;
    folder_.Write("utf16", "\xFF\xFEh\0i\0"s);
    NSString* text = [NSString stringWithContentsOfFile:Text(folder_ / "utf16")
                                           usedEncoding:&used
                                                  error:&error_];
    EXPECT_EQ(Text(text), "hi");
    EXPECT_EQ(used, NSUnicodeStringEncoding);
    folder_.Write("utf8", "ü");
    text = [NSString stringWithContentsOfFile:Text(folder_ / "utf8")
                                 usedEncoding:&used
                                        error:&error_];
    EXPECT_EQ(Text(text), "ü");
    EXPECT_EQ(used, NSUTF8StringEncoding);
    folder_.Write("neither", "\xE9");
    EXPECT_EQ([NSString stringWithContentsOfFile:Text(folder_ / "neither")
                                    usedEncoding:&used
                                           error:&error_],
              nil);
    ExpectCocoaError(error_, 264, 0, folder_ / "neither");
}

TEST_F(FileContents, WhatCannotBeReadIsAnErrorWithoutAWordOnStandardError) {
    folder_.MakeFolder("folder");
    folder_.Write("secret", "x", 0);
    const OrdinaryUser user;
    testing::internal::CaptureStderr();
    EXPECT_EQ(ReadText("missing"), nil);
    ExpectCocoaError(error_, 260, ENOENT, folder_ / "missing");
    EXPECT_EQ(ReadText("secret"), nil);
    ExpectCocoaError(error_, 257, EACCES, folder_ / "secret");
    EXPECT_EQ(ReadText("folder"), nil);
    ExpectCocoaError(error_, 256, EISDIR, folder_ / "folder");
    EXPECT_EQ(ReadText("secret/inner"), nil);
    ExpectCocoaError(error_, 256, ENOTDIR, folder_ / "secret/inner");
    EXPECT_EQ(ReadData("missing"), nil);
    ExpectCocoaError(error_, 260, ENOENT, folder_ / "missing");
    EXPECT_EQ(ReadData("secret"), nil);
    ExpectCocoaError(error_, 257, EACCES, folder_ / "secret");
    EXPECT_EQ([NSData dataWithContentsOfFile:Text(folder_ / "folder")], nil);
    EXPECT_EQ([NSString stringWithContentsOfFile:Text(folder_ / "missing")], nil);
    EXPECT_EQ([NSData dataWithContentsOfFile:nil], nil);
    EXPECT_EQ([NSString stringWithContentsOfFile:nil encoding:NSUTF8StringEncoding error:&error_],
              nil);
    EXPECT_EQ([error_ code], 258);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(FileContents, AFileOfTwoGibibytesIsTooLarge) {
    folder_.Write("large", "");
    ASSERT_EQ(truncate((folder_ / "large").c_str(), off_t{1} << 31), 0);
    EXPECT_EQ(ReadData("large"), nil);
    ExpectCocoaError(error_, 263, EFBIG, folder_ / "large");
    EXPECT_EQ(ReadText("large"), nil);
    ExpectCocoaError(error_, 263, EFBIG, folder_ / "large");
}

TEST_F(FileContents, ANewFileGetsItsModeFromTheUmask) {
    const Umask umask(022);
    EXPECT_TRUE(WriteText("atomic", @"x"));
    EXPECT_TRUE(WriteText("plain", @"x", NO));
    EXPECT_TRUE(WriteData("data", NSDataWritingAtomic));
    EXPECT_EQ(folder_.Mode("atomic"), 0644U);
    EXPECT_EQ(folder_.Mode("plain"), 0644U);
    EXPECT_EQ(folder_.Mode("data"), 0644U);
    EXPECT_EQ(folder_.Everything(), "atomic data plain");
}

TEST_F(FileContents, AReplacedFileKeepsItsMode) {
    folder_.Write("private", "old", 0600);
    folder_.Write("open", "old", 0777);
    folder_.Write("read-only", "old", 0444);
    const OrdinaryUser user;
    EXPECT_TRUE(WriteData("private", NSDataWritingAtomic));
    EXPECT_TRUE(WriteText("open", @"new"));
    EXPECT_TRUE(WriteText("read-only", @"new"));
    EXPECT_EQ(folder_.Mode("private"), 0600U);
    EXPECT_EQ(folder_.Mode("open"), 0777U);
    EXPECT_EQ(folder_.Mode("read-only"), 0444U);
    EXPECT_EQ(folder_.Read("open"), "new");
    EXPECT_FALSE(WriteText("read-only", @"newer", NO));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "read-only");
}

TEST_F(FileContents, AnAtomicWriteReplacesALinkAndAnOrdinaryOneFollowsIt) {
    const Umask umask(022);
    folder_.Write("file", "old", 0600);
    folder_.MakeLink("link", "file");
    folder_.MakeLink("followed", "file");
    EXPECT_TRUE(WriteText("link", @"new"));
    EXPECT_EQ(folder_.Read("file"), "old");
    EXPECT_EQ(folder_.Read("link"), "new");
    EXPECT_EQ(folder_.Mode("link"), 0644U);
    EXPECT_TRUE(WriteText("followed", @"newer", NO));
    EXPECT_EQ(folder_.Read("file"), "newer");
}

TEST_F(FileContents, WhatCannotBeWrittenIsAnErrorWithoutAWordOnStandardError) {
    folder_.MakeFolder("closed", 0555);
    folder_.MakeFolder("folder");
    folder_.Write("file", "x");
    const OrdinaryUser user;
    testing::internal::CaptureStderr();
    for (const BOOL atomically : {YES, NO}) {
        EXPECT_FALSE(WriteText("missing/file", @"x", atomically));
        ExpectCocoaError(error_, 4, ENOENT, folder_ / "missing/file");
        EXPECT_FALSE(WriteText("closed/file", @"x", atomically));
        ExpectCocoaError(error_, 513, EACCES, folder_ / "closed/file");
        EXPECT_FALSE(WriteText("file/inner", @"x", atomically));
        ExpectCocoaError(error_, 512, ENOTDIR, folder_ / "file/inner");
        EXPECT_FALSE(WriteText("folder", @"x", atomically));
        ExpectCocoaError(error_, 512, EISDIR, folder_ / "folder");
        EXPECT_FALSE(WriteText(std::string(256, 'n'), @"x", atomically));
        ExpectCocoaError(error_, 514, ENAMETOOLONG, folder_ / std::string(256, 'n'));
        EXPECT_FALSE([@"x" writeToFile:@"" atomically:atomically]);
        EXPECT_FALSE([[NSData data] writeToFile:nil atomically:atomically]);
    }
    EXPECT_FALSE(WriteData("closed/file", NSDataWritingAtomic));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "closed/file");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(folder_.Everything(), "closed file folder");
}

TEST_F(FileContents, ANameOfFullLengthCanBeWrittenAtomically) {
    const std::string name(255, 'n');
    EXPECT_TRUE(WriteText(name, @"x"));
    EXPECT_EQ(folder_.Everything(), name);
}

TEST_F(FileContents, AFullDiskIsAnError) {
    EXPECT_FALSE([@"x" writeToFile:@"/dev/full"
                        atomically:NO
                          encoding:NSUTF8StringEncoding
                             error:&error_]);
    ExpectCocoaError(error_, 640, ENOSPC, "/dev/full");
}

TEST_F(FileContents, AFailedAtomicWriteLeavesTheOldFile) {
    folder_.Write("file", "old", 0600);
    NSString* large = [@"" stringByPaddingToLength:300'000 withString:@"x" startingAtIndex:0];
    {
        const LargestFile limit(100'000);
        EXPECT_FALSE(WriteText("file", large));
    }
    ExpectCocoaError(error_, 512, EFBIG, folder_ / "file");
    EXPECT_EQ(folder_.Read("file"), "old");
    EXPECT_EQ(folder_.Everything(), "file");
}

TEST_F(FileContents, AFileIsKeptWhenItMustNotBeOverwritten) {
    folder_.Write("file", "old");
    EXPECT_FALSE(WriteData("file", NSDataWritingWithoutOverwriting));
    ExpectCocoaError(error_, 516, EEXIST, folder_ / "file");
    EXPECT_EQ(folder_.Read("file"), "old");
    EXPECT_TRUE(WriteData("other", NSDataWritingWithoutOverwriting));
    EXPECT_EQ(folder_.Read("other"), "new");
}

TEST_F(FileContents, ATextThatTheEncodingCannotHoldIsNotWritten) {
    EXPECT_FALSE([@"ü" writeToFile:Text(folder_ / "file")
                        atomically:YES
                          encoding:NSASCIIStringEncoding
                             error:&error_]);
    ExpectCocoaError(error_, 517, 0, folder_ / "file");
    EXPECT_EQ(folder_.Everything(), "");
}

}  // namespace
