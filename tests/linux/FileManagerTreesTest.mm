#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/linux/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

namespace {

class FileManagerTrees : public testing::Test {
  protected:
    BOOL Copy(const std::string& from, const std::string& to) {
        return [files_ copyItemAtPath:Text(folder_ / from) toPath:Text(folder_ / to) error:&error_];
    }
    BOOL Move(const std::string& from, const std::string& to) {
        return [files_ moveItemAtPath:Text(folder_ / from) toPath:Text(folder_ / to) error:&error_];
    }
    BOOL Remove(const std::string& path) {
        return [files_ removeItemAtPath:Text(folder_ / path) error:&error_];
    }
    time_t ChangedAt(const std::string& name) {
        struct stat info {};
        stat((folder_ / name).c_str(), &info);
        return info.st_mtime;
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    NSFileManager* files_ = [NSFileManager defaultManager];
    TemporaryFolder folder_;
    NSError* error_ = nil;

    ~FileManagerTrees() override { [pool_ release]; }
};

TEST_F(FileManagerTrees, ACopyHasTheBytesTheModeAndTheTimeOfItsSource) {
    std::string bytes(300'000, '\0');
    for (size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i * 31 % 251);
    }
    folder_.Write("ä %20.json", bytes, 0640);
    const timespec times[2] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
    utimensat(AT_FDCWD, (folder_ / "ä %20.json").c_str(), times, 0);
    const Umask umask(077);
    EXPECT_TRUE(Copy("ä %20.json", "copy"));
    EXPECT_EQ(folder_.Read("copy"), bytes);
    EXPECT_EQ(folder_.Mode("copy"), 0640U);
    EXPECT_EQ(ChangedAt("copy"), 1'100'000'000);
    EXPECT_EQ(error_, nil);
}

TEST_F(FileManagerTrees, AFolderIsCopiedWithAllThatLiesInIt) {
    folder_.MakeFolder("from", 0750);
    folder_.MakeFolder("from/inner", 0500);
    folder_.Write("from/file", "one", 0755);
    chmod((folder_ / "from/inner").c_str(), 0700);
    folder_.Write("from/inner/empty", "", 0400);
    chmod((folder_ / "from/inner").c_str(), 0500);
    folder_.MakeLink("from/link", "file");
    folder_.MakeLink("from/dangling", "/nowhere/at all");
    EXPECT_TRUE(Copy("from", "to"));
    EXPECT_EQ(folder_.Mode("to"), 0750U);
    EXPECT_EQ(folder_.Mode("to/inner"), 0500U);
    EXPECT_EQ(folder_.Mode("to/file"), 0755U);
    EXPECT_EQ(folder_.Mode("to/inner/empty"), 0400U);
    EXPECT_EQ(folder_.Read("to/file"), "one");
    EXPECT_EQ(folder_.Destination("to/link"), "file");
    EXPECT_EQ(folder_.Destination("to/dangling"), "/nowhere/at all");
    EXPECT_EQ(error_, nil);
}

TEST_F(FileManagerTrees, ALinkIsCopiedItself) {
    folder_.Write("file", "x");
    folder_.MakeLink("link", "file");
    EXPECT_TRUE(Copy("link", "copy"));
    EXPECT_EQ(folder_.Destination("copy"), "file");
}

TEST_F(FileManagerTrees, CopyingAMissingSourceIsAnError) {
    EXPECT_FALSE(Copy("missing.json", "copy"));
    ExpectCocoaError(error_, 260, ENOENT, folder_ / "missing.json");
    EXPECT_EQ(folder_.Everything(), "");
}

TEST_F(FileManagerTrees, NothingIsEverOverwritten) {
    folder_.Write("from", "new");
    folder_.Write("file", "old");
    folder_.MakeFolder("folder");
    folder_.MakeLink("dangling", "nothing");
    for (const std::string target : {"file", "folder", "dangling", "from"}) {
        EXPECT_FALSE(Copy("from", target));
        ExpectCocoaError(error_, 516, EEXIST, folder_ / target);
        EXPECT_FALSE(Move("from", target));
        ExpectCocoaError(error_, 516, EEXIST, folder_ / target);
    }
    EXPECT_EQ(folder_.Read("file"), "old");
    EXPECT_EQ(folder_.Everything(), "dangling file folder from");
}

TEST_F(FileManagerTrees, ACopyIntoAMissingFolderIsAnError) {
    folder_.Write("from", "x");
    EXPECT_FALSE(Copy("from", "missing/copy"));
    ExpectCocoaError(error_, 4, ENOENT, folder_ / "missing/copy");
    EXPECT_FALSE(Copy("from", "from/copy"));
    ExpectCocoaError(error_, 512, ENOTDIR, folder_ / "from/copy");
}

TEST_F(FileManagerTrees, PermissionsHoldOnBothSidesOfACopy) {
    folder_.Write("secret", "x", 0000);
    folder_.Write("open", "x");
    folder_.MakeFolder("closed", 0555);
    const OrdinaryUser user;
    EXPECT_FALSE(Copy("secret", "copy"));
    ExpectCocoaError(error_, 257, EACCES, folder_ / "secret");
    EXPECT_FALSE(Copy("open", "closed/copy"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "closed/copy");
    EXPECT_FALSE(folder_.Has("copy"));
}

TEST_F(FileManagerTrees, ACopyThatFailsHalfWayLeavesNoPartOfTheFile) {
    folder_.Write("from", std::string(300'000, 'x'));
    {
        const LargestFile limit(100'000);
        EXPECT_FALSE(Copy("from", "copy"));
    }
    ExpectCocoaError(error_, 512, EFBIG, folder_ / "copy");
    EXPECT_EQ(folder_.Everything(), "from");
}

TEST_F(FileManagerTrees, AFolderIsNeverCopiedOrMovedIntoItself) {
    folder_.MakeFolder("a");
    folder_.MakeFolder("a/b");
    folder_.MakeFolder("ab");
    folder_.MakeLink("link", "a/b");
    for (const std::string target : {"a/copy", "a/b/copy", "link/copy", "a/../a/copy"}) {
        EXPECT_FALSE(Copy("a", target));
        ExpectCocoaError(error_, 512, EINVAL, folder_ / target);
        EXPECT_FALSE(Move("a", target));
        ExpectCocoaError(error_, 512, EINVAL, folder_ / target);
    }
    EXPECT_TRUE(Copy("a", "ab/copy"));
    EXPECT_EQ(folder_.Everything(), "a a/b ab ab/copy ab/copy/b link");
}

TEST_F(FileManagerTrees, APipeIsRefusedInsteadOfWaitedFor) {
    mkfifo((folder_ / "pipe").c_str(), 0666);
    EXPECT_FALSE(Copy("pipe", "copy"));
    ExpectCocoaError(error_, 256, ENOTSUP, folder_ / "pipe");
    EXPECT_EQ([NSData dataWithContentsOfFile:Text(folder_ / "pipe")], nil);
    EXPECT_TRUE(Remove("pipe"));
}

TEST_F(FileManagerTrees, MovingRenames) {
    folder_.MakeFolder("from");
    folder_.Write("from/file", "x", 0600);
    EXPECT_TRUE(Move("from", "to"));
    EXPECT_EQ(folder_.Everything(), "to to/file");
    EXPECT_EQ(folder_.Mode("to/file"), 0600U);
    EXPECT_EQ(error_, nil);
    EXPECT_FALSE(Move("missing", "other"));
    ExpectCocoaError(error_, 4, ENOENT, folder_ / "missing");
}

TEST_F(FileManagerTrees, MovingToAnotherDiskCopiesAndRemoves) {
    const std::string shared = "/dev/shm/standins-move-" + std::to_string(getpid());
    struct stat here {};
    struct stat there {};
    ASSERT_EQ(stat(folder_.path().c_str(), &here), 0);
    ASSERT_EQ(stat("/dev/shm", &there), 0);
    ASSERT_NE(here.st_dev, there.st_dev) << "this machine has only one disk to test with";
    folder_.MakeFolder("from");
    folder_.Write("from/file", "x", 0640);
    EXPECT_TRUE([files_ moveItemAtPath:Text(folder_ / "from") toPath:Text(shared) error:&error_]);
    EXPECT_EQ(folder_.Everything(), "");
    EXPECT_TRUE([files_ moveItemAtPath:Text(shared) toPath:Text(folder_ / "back") error:&error_]);
    EXPECT_EQ(folder_.Everything(), "back back/file");
    EXPECT_EQ(folder_.Mode("back/file"), 0640U);
    EXPECT_NE(stat(shared.c_str(), &there), 0);
}

TEST_F(FileManagerTrees, RemovingTakesAFolderWithAllThatLiesInIt) {
    folder_.MakeFolder("a");
    folder_.MakeFolder("a/b");
    folder_.Write("a/b/c", "x", 0444);
    folder_.Write("keep", "x");
    folder_.MakeFolder("kept");
    folder_.Write("kept/file", "x");
    folder_.MakeLink("a/link", "../keep");
    folder_.MakeLink("a/folder", "../kept");
    EXPECT_TRUE(Remove("a"));
    EXPECT_EQ(folder_.Everything(), "keep kept kept/file");
    EXPECT_EQ(error_, nil);
}

TEST_F(FileManagerTrees, RemovingALinkLeavesWhatItPointsTo) {
    folder_.MakeFolder("folder");
    folder_.Write("folder/file", "x");
    folder_.MakeLink("link", "folder");
    folder_.MakeLink("dangling", "nothing");
    EXPECT_TRUE(Remove("link/"));
    EXPECT_TRUE(Remove("dangling"));
    EXPECT_EQ(folder_.Everything(), "folder folder/file");
}

TEST_F(FileManagerTrees, RemovingWhatIsMissingIsAnError) {
    EXPECT_FALSE(Remove("missing"));
    ExpectCocoaError(error_, 4, ENOENT, folder_ / "missing");
    folder_.Write("file", "x");
    EXPECT_FALSE(Remove("file/inner"));
    ExpectCocoaError(error_, 512, ENOTDIR, folder_ / "file/inner");
}

TEST_F(FileManagerTrees, RemovingNeedsPermission) {
    folder_.MakeFolder("closed");
    folder_.Write("closed/file", "x");
    folder_.MakeFolder("outer");
    folder_.MakeFolder("outer/unreadable");
    folder_.Write("outer/unreadable/file", "x");
    chmod((folder_ / "closed").c_str(), 0555);
    chmod((folder_ / "outer/unreadable").c_str(), 0);
    chmod((folder_ / "outer").c_str(), 0777);
    const OrdinaryUser user;
    EXPECT_FALSE(Remove("closed/file"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "closed/file");
    EXPECT_FALSE(Remove("outer"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "outer/unreadable");
}

TEST_F(FileManagerTrees, AMissingPathNeverRemovesAnything) {
    EXPECT_FALSE([files_ removeItemAtPath:nil error:&error_]);
    EXPECT_EQ([error_ code], 514);
    EXPECT_FALSE([files_ removeItemAtPath:@"" error:&error_]);
    EXPECT_EQ([error_ code], 514);
    EXPECT_FALSE([files_ removeItemAtPath:@"" error:nullptr]);
}

TEST_F(FileManagerTrees, CopyingWithoutAPathRaisesAsOnAMac) {
    NSString* raised = nil;
    @try {
        [files_ copyItemAtPath:nil toPath:@"/tmp/x" error:&error_];
    } @catch (NSException* exception) {
        raised = [exception name];
    }
    EXPECT_EQ(Text(raised), "NSInvalidArgumentException");
    EXPECT_FALSE([files_ copyItemAtPath:@"" toPath:Text(folder_ / "x") error:&error_]);
    EXPECT_EQ([error_ code], 258);
}

TEST_F(FileManagerTrees, ErrorsReadLikeApples) {
    folder_.Write("a.json", "x");
    folder_.MakeFolder("Folder");
    folder_.Write("Folder/a.json", "y");
    EXPECT_FALSE(Copy("a.json", "Folder/a.json"));
    EXPECT_EQ(Text([error_ description]),
              "Error Domain=NSCocoaErrorDomain Code=516 \"“a.json” couldn’t be copied to “Folder” "
              "because an item with the same name already exists.\" UserInfo={NSFilePath=" +
                  (folder_ / "Folder/a.json") +
                  ", NSUnderlyingError={Error Domain=NSPOSIXErrorDomain Code=17 \"File exists\"}}");
    EXPECT_EQ(Text([error_ localizedDescription]),
              "“a.json” couldn’t be copied to “Folder” because an item with the same name already "
              "exists.");
}

}  // namespace
