// Copying and removing files and folders.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>

#include <cerrno>

#include "tests/support/FileFixture.h"

namespace {

class FileManagerTrees : public FileFixture {
  protected:
    time_t ChangedAt(const std::string& name) {
        struct stat info {};
        stat((folder_ / name).c_str(), &info);
        return info.st_mtime;
    }
};

TEST_F(FileManagerTrees, ACopyHasTheBytesTheModeAndTheTimeOfItsSource) {
    std::string bytes(300'000, '\0');
    for (size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i * 31 % 251);
    }
    folder_.Write("ä %20.json", bytes, 0640);
    const timeval times[2] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
    ASSERT_EQ(utimes((folder_ / "ä %20.json").c_str(), times), 0);
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
        ExpectCocoaError(error_, 516, EEXIST, folder_ / "from");
    }
    EXPECT_EQ(folder_.Read("file"), "old");
    EXPECT_EQ(folder_.Everything(), "dangling file folder from");
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

TEST_F(FileManagerTrees, CopyingWithoutAPathRaises) {
    NSString* raised = nil;
    @try {
        [files_ copyItemAtPath:nil toPath:Text(folder_ / "x") error:&error_];
    } @catch (NSException* exception) {
        raised = [exception name];
    }
    EXPECT_EQ(Text(raised), "NSInvalidArgumentException");
    EXPECT_FALSE([files_ copyItemAtPath:@"" toPath:Text(folder_ / "x") error:&error_]);
    EXPECT_EQ([error_ code], 258);
}

TEST_F(FileManagerTrees, EveryFailureBehindTheFirstLookCountsAsWritingAndNamesTheSource) {
    folder_.Write("secret", "x", 0000);
    folder_.Write("open", "x");
    folder_.MakeFolder("closed", 0555);
    folder_.MakeFolder("hidden", 0);
    const OrdinaryUser user;
    EXPECT_FALSE(Copy("hidden/file", "copy"));
    ExpectCocoaError(error_, 257, EACCES, folder_ / "hidden/file");
    EXPECT_FALSE(Copy("secret", "copy"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "secret");
    EXPECT_FALSE(Copy("open", "closed/copy"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "open");
    EXPECT_EQ(Text([error_ localizedDescription]),
              "“open” couldn’t be copied because you don’t have permission to access “closed”.");
    EXPECT_FALSE(Copy("open", "missing/copy"));
    ExpectCocoaError(error_, 4, ENOENT, folder_ / "open");
    EXPECT_EQ(Text([error_ localizedDescription]), "The file “open” doesn’t exist.");
    EXPECT_FALSE(Copy("open", "open/copy"));
    ExpectCocoaError(error_, 512, ENOTDIR, folder_ / "open");
    EXPECT_FALSE(folder_.Has("copy"));
}

TEST_F(FileManagerTrees, AFolderThatCannotBeListedIsNotCopied) {
    folder_.MakeFolder("from");
    folder_.MakeFolder("from/inner", 0);
    folder_.MakeFolder("to", 0777);
    const OrdinaryUser user;
    EXPECT_FALSE(Copy("from", "to/copy"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "from");
}

TEST_F(FileManagerTrees, ACopysErrorNamesBothSides) {
    folder_.Write("a.json", "x");
    folder_.MakeFolder("Folder");
    folder_.Write("Folder/a.json", "y");
    EXPECT_FALSE(Copy("a.json", "Folder/a.json"));
    ExpectCocoaError(error_, 516, EEXIST, folder_ / "a.json");
    EXPECT_EQ(Text([error_ localizedDescription]),
              "“a.json” couldn’t be copied to “Folder” because an item with the same name already "
              "exists.");
    NSDictionary* info = [error_ userInfo];
    EXPECT_EQ(Text((NSString*)[info objectForKey:@"NSSourceFilePathErrorKey"]), folder_ / "a.json");
    EXPECT_EQ(Text((NSString*)[info objectForKey:@"NSDestinationFilePath"]),
              folder_ / "Folder/a.json");
    EXPECT_TRUE([[info objectForKey:@"NSUserStringVariant"] isEqual:@[ @"Copy" ]]);
}

TEST_F(FileManagerTrees, RemovingWhatIsMissingIsAnError) {
    EXPECT_FALSE(Remove("missing"));
    ExpectCocoaError(error_, 4, ENOENT, folder_ / "missing");
    EXPECT_EQ(Text([error_ localizedDescription]), "“missing” couldn’t be removed.");
    folder_.Write("file", "x");
    EXPECT_FALSE(Remove("file/inner"));
    ExpectCocoaError(error_, 512, ENOTDIR, folder_ / "file/inner");
}

// What else of the folder is gone by then depends on the disk's order.
TEST_F(FileManagerTrees, ARemovalThatFailsNamesWhatWasAskedFor) {
    folder_.MakeFolder("outer");
    folder_.MakeFolder("outer/closed", 0);
    chmod((folder_ / "outer").c_str(), 0777);
    const OrdinaryUser user;
    EXPECT_FALSE(Remove("outer"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "outer");
    EXPECT_EQ(Text([error_ localizedDescription]),
              "“outer” couldn’t be removed because you don’t have permission to access it.");
    EXPECT_TRUE(folder_.Has("outer/closed"));
}

TEST_F(FileManagerTrees, AFolderThatCannotBeListedKeepsItsContents) {
    folder_.MakeFolder("folder");
    folder_.Write("folder/file", "x");
    chmod((folder_ / "folder").c_str(), 0333);
    {
        const OrdinaryUser user;
        EXPECT_FALSE(Remove("folder"));
    }
    ExpectCocoaError(error_, 513, EACCES, folder_ / "folder");
    EXPECT_TRUE(folder_.Has("folder/file"));
}

TEST_F(FileManagerTrees, AFullFolderInAClosedOneIsEmptiedAndReported) {
    folder_.MakeFolder("closed");
    folder_.MakeFolder("closed/full");
    folder_.Write("closed/full/file", "x");
    chmod((folder_ / "closed/full").c_str(), 0777);
    chmod((folder_ / "closed").c_str(), 0555);
    const OrdinaryUser user;
    EXPECT_FALSE(Remove("closed/full"));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "closed/full");
    EXPECT_EQ(folder_.Everything(), "closed closed/full");
}

}  // namespace
