#include <gtest/gtest.h>

#include <cerrno>

#include "tests/linux/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

namespace {

class FileManagerAttributes : public testing::Test {
  protected:
    BOOL SetMode(const std::string& name, id mode) {
        return [files_ setAttributes:@{NSFilePosixPermissions : mode}
                        ofItemAtPath:Text(folder_ / name)
                               error:&error_];
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    NSFileManager* files_ = [NSFileManager defaultManager];
    TemporaryFolder folder_;
    NSError* error_ = nil;

    ~FileManagerAttributes() override { [pool_ release]; }
};

TEST_F(FileManagerAttributes, PermissionsAreSetWhateverTheUmask) {
    folder_.Write("file", "x", 0600);
    const Umask umask(077);
    EXPECT_TRUE(SetMode("file", @511));
    EXPECT_EQ(folder_.Mode("file"), 0777U);
    EXPECT_EQ(error_, nil);
    EXPECT_TRUE(SetMode("file", @"not a number"));
    EXPECT_EQ(folder_.Mode("file"), 0777U);
}

TEST_F(FileManagerAttributes, SettingThemMayFail) {
    folder_.Write("file", "x");
    const OrdinaryUser user;
    EXPECT_FALSE(SetMode("missing", @511));
    ExpectCocoaError(error_, 4, ENOENT, folder_ / "missing");
    EXPECT_FALSE([files_ setAttributes:@{} ofItemAtPath:@"/missing" error:&error_]);
    EXPECT_EQ([error_ code], 4);
    EXPECT_FALSE([files_ setAttributes:@{} ofItemAtPath:nil error:&error_]);
    EXPECT_EQ([error_ code], 514);
    // The root folder belongs to root on every machine.
    EXPECT_FALSE([files_ setAttributes:@{
        NSFilePosixPermissions : @511
    }
                          ofItemAtPath:@"/"
                                 error:&error_]);
    ExpectCocoaError(error_, 513, EPERM, "/");
}

TEST_F(FileManagerAttributes, OtherAttributesAreSetToo) {
    folder_.Write("file", "x");
    NSDate* date = [NSDate dateWithTimeIntervalSince1970:1'100'000'000];
    EXPECT_TRUE([files_ setAttributes:@{NSFileModificationDate : date}
                         ofItemAtPath:Text(folder_ / "file")
                                error:&error_]);
    NSDictionary* attributes = [files_ attributesOfItemAtPath:Text(folder_ / "file") error:&error_];
    EXPECT_EQ([[attributes fileModificationDate] timeIntervalSince1970], 1'100'000'000);
}

TEST_F(FileManagerAttributes, TheyAreReadOfALinkItself) {
    folder_.Write("file", "four", 0640);
    folder_.MakeLink("link", "file");
    NSDictionary* file = [files_ attributesOfItemAtPath:Text(folder_ / "file") error:&error_];
    NSDictionary* link = [files_ attributesOfItemAtPath:Text(folder_ / "link") error:&error_];
    EXPECT_EQ([file fileSize], 4U);
    EXPECT_EQ([file filePosixPermissions], 0640U);
    EXPECT_EQ(Text([file fileType]), "NSFileTypeRegular");
    EXPECT_EQ(Text([link fileType]), "NSFileTypeSymbolicLink");
    EXPECT_EQ(error_, nil);
}

TEST_F(FileManagerAttributes, ReadingThemMayFail) {
    EXPECT_EQ([files_ attributesOfItemAtPath:Text(folder_ / "missing") error:&error_], nil);
    ExpectCocoaError(error_, 260, ENOENT, folder_ / "missing");
    EXPECT_EQ([files_ attributesOfItemAtPath:nil error:&error_], nil);
    EXPECT_EQ([error_ code], 258);
    folder_.MakeFolder("closed", 0);
    const OrdinaryUser user;
    EXPECT_EQ([files_ attributesOfItemAtPath:Text(folder_ / "closed/file") error:&error_], nil);
    ExpectCocoaError(error_, 257, EACCES, folder_ / "closed/file");
}

}  // namespace
