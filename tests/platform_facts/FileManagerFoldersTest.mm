// Making folders, asking for them, and permissions.
#include <gtest/gtest.h>

#include <cerrno>

#include "tests/support/FileFixture.h"

namespace {

class FileManagerFolders : public FileFixture {};

TEST_F(FileManagerFolders, EveryNewLevelGetsTheModeWhateverTheUmask) {
    for (const mode_t mask : {022U, 077U, 0U}) {
        const Umask umask(mask);
        const TemporaryFolder folder;
        EXPECT_TRUE(Create(folder / "a/b c/ü%", 0777));
        EXPECT_EQ(folder.Mode("a"), 0777U);
        EXPECT_EQ(folder.Mode("a/b c"), 0777U);
        EXPECT_EQ(folder.Mode("a/b c/ü%"), 0777U);
    }
    EXPECT_EQ(error_, nil);
}

TEST_F(FileManagerFolders, WithoutAModeTheUmaskCounts) {
    const Umask umask(027);
    EXPECT_TRUE(Create(folder_ / "a/b", -1));
    EXPECT_EQ(folder_.Mode("a"), 0750U);
    EXPECT_EQ(folder_.Mode("a/b"), 0750U);
}

TEST_F(FileManagerFolders, ExistingFoldersKeepTheirMode) {
    folder_.MakeFolder("old", 0711);
    EXPECT_TRUE(Create(folder_ / "old", 0777));
    EXPECT_TRUE(Create(folder_ / "old/new", 0777));
    EXPECT_EQ(folder_.Mode("old"), 0711U);
    EXPECT_EQ(folder_.Mode("old/new"), 0777U);
}

TEST_F(FileManagerFolders, DoubledAndTrailingSlashesMakeNoDifference) {
    EXPECT_TRUE(Create("/" + folder_.path() + "//a///b//", 0777));
    EXPECT_EQ(folder_.Everything(), "a a/b");
    EXPECT_TRUE(Create(folder_ / "a//", 0777));
}

TEST_F(FileManagerFolders, AFileInTheWayIsAnError) {
    folder_.Write("file", "x");
    EXPECT_FALSE(Create(folder_ / "file", 0777));
    ExpectCocoaError(error_, 512, ENOTDIR, folder_ / "file");
    EXPECT_FALSE(Create(folder_ / "file/inner/most", 0777));
    ExpectCocoaError(error_, 512, ENOTDIR, folder_ / "file");
    EXPECT_EQ(Text([error_ localizedDescription]),
              "The file “file” couldn’t be saved in the folder “" +
                  folder_.path().substr(folder_.path().rfind('/') + 1) + "”.");
    EXPECT_EQ(folder_.Everything(), "file");
}

TEST_F(FileManagerFolders, ALinkToAFolderCountsAsTheFolder) {
    folder_.MakeFolder("real", 0755);
    folder_.MakeLink("link", "real");
    EXPECT_TRUE(Create(folder_ / "link", 0777));
    EXPECT_TRUE(Create(folder_ / "link/inner", 0777));
    EXPECT_EQ(folder_.Mode("real/inner"), 0777U);
    EXPECT_EQ(error_, nil);
}

TEST_F(FileManagerFolders, ALinkToNothingIsInTheWay) {
    folder_.MakeLink("dangling", "nothing");
    EXPECT_FALSE(Create(folder_ / "dangling", 0777));
    ExpectCocoaError(error_, 512, ENOTDIR, folder_ / "dangling");
    EXPECT_FALSE(folder_.Has("nothing"));
}

TEST_F(FileManagerFolders, AFolderThatMayNotBeWrittenIsAnError) {
    folder_.MakeFolder("closed", 0555);
    const OrdinaryUser user;
    EXPECT_FALSE(Create(folder_ / "closed/a/b", 0777));
    ExpectCocoaError(error_, 513, EACCES, folder_ / "closed/a/b");
    EXPECT_EQ(Text([error_ localizedDescription]),
              "You don’t have permission to save the file “b” in the folder “a”.");
}

TEST_F(FileManagerFolders, ExistenceFollowsLinksAndTellsFoldersFromFiles) {
    folder_.MakeFolder("folder");
    folder_.Write("file", "");
    folder_.MakeLink("to-folder", "folder");
    folder_.MakeLink("dangling", "nothing");
    const auto look = [&](const std::string& name) {
        BOOL isFolder = YES;
        const BOOL exists = [[NSFileManager defaultManager] fileExistsAtPath:Text(folder_ / name)
                                                                 isDirectory:&isFolder];
        return std::string(exists ? "exists" : "missing") + (isFolder ? " folder" : "");
    };
    EXPECT_EQ(look("folder"), "exists folder");
    EXPECT_EQ(look("to-folder"), "exists folder");
    EXPECT_EQ(look("file"), "exists");
    EXPECT_EQ(look("dangling"), "missing");
    EXPECT_EQ(look("nothing"), "missing");
    EXPECT_EQ(look("file/below"), "missing");
}

TEST_F(FileManagerFolders, ANameThatIsTooLongIsAnError) {
    EXPECT_FALSE(Create(folder_ / std::string(300, 'n'), 0777));
    ExpectCocoaError(error_, 514, 63, folder_ / std::string(300, 'n'));
}

}  // namespace
