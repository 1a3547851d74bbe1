// Files, paths and failures that only Debian can show, that no published code tells of, or that
// would hang or end a program on a Mac. This program takes the place of the setting of times.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "tests/support/FileFixture.h"

namespace {

bool refusesTimes = false;

}  // namespace

extern "C" int futimens(int descriptor, const timespec times[2]) {
    if (refusesTimes) {
        errno = EPERM;
        return -1;
    }
    return static_cast<int>(syscall(SYS_utimensat, descriptor, nullptr, times, 0));
}

namespace {

class UnusualFiles : public FileFixture {
  protected:
    std::string Contents(const std::string& path) {
        return Joined([files_ contentsOfDirectoryAtPath:Text(path) error:&error_]);
    }
    std::string Subpaths(const std::string& path) {
        return Joined([files_ subpathsOfDirectoryAtPath:Text(path) error:&error_]);
    }
    static std::string Joined(NSArray* names) {
        return Text(names == nil ? nil : [names componentsJoinedByString:@"|"]);
    }
};

TEST_F(UnusualFiles, AFileOfTwoGibibytesIsTooLarge) {
    folder_.Write("large", "");
    ASSERT_EQ(truncate((folder_ / "large").c_str(), off_t{1} << 31), 0);
    EXPECT_EQ(ReadData("large"), nil);
    EXPECT_EQ(ReadText("large"), nil);
    ExpectCocoaError(error_, 263, EFBIG, folder_ / "large");
}

TEST_F(UnusualFiles, AModeThatClosesAFolderStillLetsTheInnerOnesBeMade) {
    const OrdinaryUser user;
    EXPECT_TRUE(Create(folder_ / "a/b/c", 0500));
    EXPECT_EQ(folder_.Mode("a"), 0500U);
    EXPECT_EQ(folder_.Mode("a/b/c"), 0500U);
}

TEST_F(UnusualFiles, APathThatNoFolderCanHaveIsAnErrorAndNoCrash) {
    const unichar odd[] = {'/', 't', 'm', 'p', '/', 'x', 0, 'y'};
    NSFileManager* files = [NSFileManager defaultManager];
    for (NSString* path in @[ @"", [NSString stringWithCharacters:odd length:8] ]) {
        NSError* error = nil;
        EXPECT_FALSE([files createDirectoryAtPath:path
                      withIntermediateDirectories:YES
                                       attributes:nil
                                            error:&error]);
        EXPECT_EQ([error code], 514);
        BOOL isFolder = YES;
        EXPECT_FALSE([files fileExistsAtPath:path isDirectory:&isFolder]);
        EXPECT_FALSE(isFolder);
        EXPECT_FALSE([files fileExistsAtPath:path]);
    }
    EXPECT_FALSE([files createDirectoryAtPath:nil
                  withIntermediateDirectories:YES
                                   attributes:nil
                                        error:nullptr]);
    EXPECT_FALSE([files fileExistsAtPath:nil]);
}

TEST_F(UnusualFiles, NamesThatAreNotUtf8ArePassedOver) {
    folder_.Write("good", "");
    folder_.Write("bad\xFF", "");
    EXPECT_EQ(Contents(folder_.path()), "good");
    EXPECT_EQ(Subpaths(folder_.path()), "good");
    EXPECT_TRUE([files_ removeItemAtPath:Text(folder_.path()) error:&error_]);
    folder_.MakeFolder("");
}

TEST_F(UnusualFiles, ACopyThatFailsHalfWayLeavesNoPartOfTheFile) {
    folder_.Write("from", std::string(300'000, 'x'));
    {
        const LargestFile limit(100'000);
        EXPECT_FALSE(Copy("from", "copy"));
    }
    ExpectCocoaError(error_, 512, EFBIG, folder_ / "from");
    EXPECT_EQ(folder_.Everything(), "from");
}

TEST_F(UnusualFiles, AFolderIsNeverCopiedIntoItself) {
    folder_.MakeFolder("a");
    folder_.MakeFolder("a/b");
    folder_.MakeFolder("ab");
    folder_.MakeLink("link", "a/b");
    for (const std::string target : {"a/copy", "a/b/copy", "link/copy", "a/../a/copy"}) {
        EXPECT_FALSE(Copy("a", target));
        ExpectCocoaError(error_, 512, EINVAL, folder_ / "a");
    }
    EXPECT_TRUE(Copy("a", "ab/copy"));
    EXPECT_EQ(folder_.Everything(), "a a/b ab ab/copy ab/copy/b link");
}

TEST_F(UnusualFiles, APipeIsRefusedInsteadOfWaitedFor) {
    mkfifo((folder_ / "pipe").c_str(), 0666);
    EXPECT_FALSE(Copy("pipe", "copy"));
    ExpectCocoaError(error_, 512, 45, folder_ / "pipe");
    EXPECT_EQ([NSData dataWithContentsOfFile:Text(folder_ / "pipe")], nil);
    EXPECT_TRUE(Remove("pipe"));
}

TEST_F(UnusualFiles, AMissingPathNeverRemovesAnything) {
    EXPECT_FALSE([files_ removeItemAtPath:nil error:&error_]);
    EXPECT_EQ([error_ code], 514);
    EXPECT_FALSE([files_ removeItemAtPath:@"" error:&error_]);
    EXPECT_EQ([error_ code], 514);
    EXPECT_FALSE([files_ removeItemAtPath:@"" error:nullptr]);
}

TEST_F(UnusualFiles, ATimeThatTheDiskRefusesLeavesTheCopy) {
    folder_.Write("from", "x", 0640);
    refusesTimes = true;
    EXPECT_TRUE(Copy("from", "copy"));
    refusesTimes = false;
    EXPECT_EQ(folder_.Read("copy"), "x");
    EXPECT_EQ(folder_.Mode("copy"), 0640U);
}

TEST_F(UnusualFiles, AFolderThatCannotBeListedLeavesTheOneMadeForIt) {
    folder_.MakeFolder("from");
    folder_.MakeFolder("from/inner", 0);
    folder_.Write("from/later", "x");
    folder_.MakeFolder("to", 0777);
    chmod((folder_ / "to").c_str(), 0777);
    const OrdinaryUser user;
    EXPECT_FALSE(Copy("from", "to/copy"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "from");
    EXPECT_TRUE(folder_.Has("to/copy/inner"));
    EXPECT_FALSE(folder_.Has("to/copy/later"));
}

TEST_F(UnusualFiles, ARemovalThatFailsNamesWhatWasAskedFor) {
    folder_.MakeFolder("outer");
    folder_.Write("outer/before", "x");
    folder_.MakeFolder("outer/closed", 0);
    folder_.Write("outer/later", "x");
    chmod((folder_ / "outer").c_str(), 0777);
    const OrdinaryUser user;
    EXPECT_FALSE(Remove("outer"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "outer");
    EXPECT_EQ(Text([error_ localizedDescription]),
              "“outer” couldn’t be removed because you don’t have permission to access it.");
    EXPECT_FALSE(folder_.Has("outer/before"));
    EXPECT_TRUE(folder_.Has("outer/later"));
}

TEST_F(UnusualFiles, ListsAreSortedByName) {
    folder_.Write("b c", "");
    folder_.Write("ü%20", "");
    folder_.MakeFolder("a");
    folder_.Write("a/inner", "");
    folder_.Write("a b", "");
    EXPECT_EQ(Contents(folder_.path()), "a|a b|b c|ü%20");
    EXPECT_EQ(Subpaths(folder_.path()), "a|a/inner|a b|b c|ü%20");
}

TEST_F(UnusualFiles, NoPathAtAllIsAnErrorOrNothing) {
    EXPECT_EQ([NSData dataWithContentsOfFile:nil], nil);
    EXPECT_EQ([NSString stringWithContentsOfFile:nil encoding:NSUTF8StringEncoding error:&error_],
              nil);
    EXPECT_EQ([error_ code], 258);
    EXPECT_FALSE([[NSData data] writeToFile:@"" atomically:YES]);
    EXPECT_FALSE([[NSData data] writeToFile:nil atomically:YES]);
    EXPECT_EQ([files_ contentsOfDirectoryAtPath:nil error:nullptr], nil);
    EXPECT_EQ([files_ subpathsOfDirectoryAtPath:nil error:nullptr], nil);
    EXPECT_EQ([NSDictionary dictionaryWithContentsOfFile:nil], nil);
}

TEST_F(UnusualFiles, APipeHoldsNoDictionary) {
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0644), 0);
    EXPECT_EQ([NSDictionary dictionaryWithContentsOfFile:Text(folder_ / "pipe")], nil);
}

}  // namespace
