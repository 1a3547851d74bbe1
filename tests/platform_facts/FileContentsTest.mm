// Texts and data in files: what is read, what is written, and what is said of failures.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>

#include "tests/support/FileFixture.h"

namespace {

using namespace std::string_literals;

class FileContents : public FileFixture {
  protected:
    BOOL WriteText(const std::string& name, NSString* text) {
        return [text writeToFile:Text(folder_ / name)
                      atomically:YES
                        encoding:NSUTF8StringEncoding
                           error:&error_];
    }
    BOOL WriteData(const std::string& name, NSUInteger options) {
        return [[NSData dataWithBytes:"new" length:3] writeToFile:Text(folder_ / name)
                                                          options:options
                                                            error:&error_];
    }
};

TEST_F(FileContents, ATextIsWrittenBackAsItWasRead) {
    for (const std::string& bytes :
         {""s, "plain\n"s, "nul\0inside\0"s, "\0"s, "a\xEF\xBB\xBF mark inside"s,
          "ü é € 😀 \xEF\xBF\xBF"s, std::string(200'000, 'x') + "ü"}) {
        folder_.Write("in", bytes);
        NSString* text = ReadText("in");
        ASSERT_NE(text, nil);
        EXPECT_TRUE(WriteText("out", text));
        EXPECT_EQ(folder_.Read("out"), bytes);
    }
    EXPECT_EQ(error_, nil);
}

TEST_F(FileContents, OneByteOrderMarkAtTheStartIsDropped) {
    const std::string mark = "\xEF\xBB\xBF";
    for (const std::string& rest : {""s, "x"s, "ü\0"s}) {
        folder_.Write("in", mark + rest);
        NSString* text = ReadText("in");
        ASSERT_NE(text, nil);
        EXPECT_TRUE(WriteText("out", text));
        EXPECT_EQ(folder_.Read("out"), rest);
    }
}

TEST_F(FileContents, TheOldCopyrightSignIsReadAsAReplacementCharacter) {
    folder_.Write("in", "\xA9 2014\xA9\xA9 \xC2\xA9 \xC3\xA9");
    EXPECT_EQ(Text(ReadText("in")), "\uFFFD 2014\uFFFD\uFFFD © é");
    EXPECT_EQ(error_, nil);
}

TEST_F(FileContents, BytesOfAnotherEncodingAreAnError) {
    for (const std::string bytes :
         {"\xFF", "caf\xE9", "\xC3\xC3\xA9", "\xE2\xA9", "\xC0\x80", "\xED\xA0\x80", "\xE2\x82",
          "\xF4\x90\x80\x80", "\xEF\xBB\xBF\xFF"}) {
        folder_.Write("in", bytes);
        error_ = nil;
        EXPECT_EQ(ReadText("in"), nil);
        ExpectCocoaError(error_, 261, 0, folder_ / "in");
        EXPECT_EQ([[[error_ userInfo] objectForKey:NSStringEncodingErrorKey] intValue], 4);
        EXPECT_EQ(Text([error_ localizedDescription]),
                  "The file “in” couldn’t be opened using text encoding Unicode (UTF-8).");
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
    EXPECT_EQ([data length], 5U);
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
    EXPECT_EQ(ReadData("secret"), nil);
    EXPECT_EQ(ReadData("folder"), nil);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(FileContents, ANewFileGetsItsModeFromTheUmask) {
    const Umask umask(022);
    EXPECT_TRUE(WriteText("atomic", @"x"));
    EXPECT_TRUE(WriteData("data", NSDataWritingAtomic));
    EXPECT_EQ(folder_.Mode("atomic"), 0644U);
    EXPECT_EQ(folder_.Mode("data"), 0644U);
    EXPECT_EQ(folder_.Everything(), "atomic data");
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
}

// Which mode replaces that of a link was read, and only in the newest code.
TEST_F(FileContents, AnAtomicWriteReplacesALink) {
    const Umask umask(022);
    folder_.Write("file", "old", 0600);
    folder_.MakeLink("link", "file");
    folder_.MakeLink("dangling", "nothing");
    EXPECT_TRUE(WriteText("link", @"new"));
    EXPECT_EQ(folder_.Read("file"), "old");
    EXPECT_EQ(folder_.Read("link"), "new");
    EXPECT_EQ(folder_.Mode("link"), 0600U) << "the one of the file that it led to";
    EXPECT_TRUE(WriteText("dangling", @"new"));
    EXPECT_EQ(folder_.Mode("dangling"), 0644U);
    EXPECT_FALSE(folder_.Has("nothing"));
}

TEST_F(FileContents, ATargetThatCannotBeLookedAtIsNotWritten) {
    folder_.MakeFolder("closed");
    folder_.Write("closed/file", "old");
    chmod((folder_ / "closed").c_str(), 0);
    {
        const OrdinaryUser user;
        EXPECT_FALSE(WriteText("closed/file", @"new"));
    }
    ExpectCocoaError(error_, 513, EACCES, folder_ / "closed/file");
    EXPECT_EQ(folder_.Everything(), "closed closed/file");
}

TEST_F(FileContents, FailuresHaveTheseSentences) {
    folder_.Write("secret", "x", 0);
    folder_.MakeFolder("closed", 0555);
    const OrdinaryUser user;
    ReadText("missing");
    const std::string sentence =
        "The file “missing” couldn’t be opened because there is no such file.";
    EXPECT_EQ(Text([error_ localizedDescription]), sentence);
    EXPECT_EQ(Text([error_ description])
                  .rfind("Error Domain=NSCocoaErrorDomain Code=260 \"" + sentence + "\" ", 0),
              0U);
    ReadText("secret");
    EXPECT_EQ(Text([error_ localizedDescription]),
              "The file “secret” couldn’t be opened because you don’t have permission to view it.");
    WriteText("closed/file", @"x");
    EXPECT_EQ(Text([error_ localizedDescription]),
              "You don’t have permission to save the file “file” in the folder “closed”.");
    WriteText("missing/file", @"x");
    EXPECT_EQ(Text([error_ localizedDescription]), "The folder “file” doesn’t exist.");
    WriteText("“F”/“N”", @"x");
    EXPECT_EQ(Text([error_ localizedDescription]), "The folder ““N”” doesn’t exist.");
}

TEST_F(FileContents, WhatCannotBeWrittenIsAnErrorWithoutAWordOnStandardError) {
    folder_.MakeFolder("closed", 0555);
    folder_.MakeFolder("folder");
    folder_.Write("file", "x");
    const OrdinaryUser user;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(WriteText("missing/file", @"x"));
    ExpectCocoaError(error_, 4, ENOENT, folder_ / "missing/file");
    EXPECT_FALSE(WriteText("closed/file", @"x"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "closed/file");
    EXPECT_FALSE(WriteText("file/inner", @"x"));
    ExpectCocoaError(error_, 512, ENOTDIR, folder_ / "file/inner");
    EXPECT_FALSE(WriteText("folder", @"x"));
    ExpectCocoaError(error_, 512, EISDIR, folder_ / "folder");
    EXPECT_FALSE(WriteText(std::string(256, 'n'), @"x"));
    ExpectCocoaError(error_, 514, 63, folder_ / std::string(256, 'n'));
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

TEST_F(FileContents, ATextThatTheEncodingCannotHoldIsNotWritten) {
    EXPECT_FALSE([@"ü" writeToFile:Text(folder_ / "file")
                        atomically:YES
                          encoding:NSASCIIStringEncoding
                             error:&error_]);
    EXPECT_EQ([error_ code], 517);
    EXPECT_EQ(folder_.Everything(), "");
}

}  // namespace
