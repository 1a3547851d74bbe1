// What a test of PathUtils does not reach of PathUtils_Mac; the rest is tested there.
#include "platform/PathUtils_Mac.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/PathUtils.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

namespace fs = std::filesystem;

namespace {

class PathUtils_MacTest : public testing::Test {
  protected:
    NSString* In(const std::string& name) const {
        return [NSString stringWithUTF8String:(folder / name).c_str()];
    }

    const TemporaryFolder folder;
    NSString* const nothing = nil;
};

TEST_F(PathUtils_MacTest, EnsuringTellsWhetherTheFolderWasThereBefore) {
    WriteFile(folder / "file", "x");
    EXPECT_FALSE([PathUtils_Mac EnsureFolderPath:In("a/b")]);
    EXPECT_TRUE(fs::is_directory(folder / "a/b"));
    EXPECT_EQ(ModeOf(folder / "a"), 0777U);
    EXPECT_EQ(ModeOf(folder / "a/b"), 0777U);
    EXPECT_TRUE([PathUtils_Mac EnsureFolderPath:In("a/b")]);
    EXPECT_FALSE([PathUtils_Mac EnsureFolderPath:In("file")]);
    EXPECT_FALSE([PathUtils_Mac EnsureFolderPath:In("file/below")]);
    EXPECT_TRUE(fs::is_regular_file(folder / "file"));
}

// The bundle of a program outside any is its folder.
TEST_F(PathUtils_MacTest, TheModuleIsTheMainBundle) {
    const std::string ascii = fs::read_symlink("/proc/self/exe").parent_path();
    EXPECT_EQ([[PathUtils_Mac FromModuleFileName] UTF8String], ascii);
    EXPECT_EQ(PathUtils::FromModuleFileName(), std::wstring(ascii.begin(), ascii.end()));
}

TEST_F(PathUtils_MacTest, CreatingAnExistingFolderSucceeds) {
    EXPECT_TRUE([PathUtils_Mac CreateDirectory:In("a")]);
    EXPECT_TRUE([PathUtils_Mac CreateDirectory:In("a")]);
    EXPECT_TRUE([PathUtils_Mac CreateDirectory:@"/"]);
}

TEST_F(PathUtils_MacTest, NamesOfEveryScriptAreFiles) {
    EXPECT_TRUE([PathUtils_Mac CreateDirectory:In("Zürich/東京 😀")]);
    NSArray* items = [PathUtils_Mac EnumAllItemsInFolder:In(""):YES];
    EXPECT_TRUE([items containsObject:[NSString stringWithUTF8String:"Zürich/東京 😀"]]);
    EXPECT_EQ([items count], 2U);
}

TEST_F(PathUtils_MacTest, TheWorkingFolderHasAName) {
    const fs::path before = fs::current_path();
    fs::current_path(folder / "");
    WriteFile(folder / "file", "x");
    EXPECT_EQ([[PathUtils_Mac EnumAllItemsInFolder:@".":NO] count], 1U);
    fs::current_path(before);
}

TEST_F(PathUtils_MacTest, AtNoPathThereIsNothing) {
    EXPECT_FALSE([PathUtils_Mac DirectoryExists:nothing]);
    EXPECT_FALSE([PathUtils_Mac FileExists:nothing]);
    EXPECT_FALSE([PathUtils_Mac CreateDirectory:nothing]);
    EXPECT_FALSE([PathUtils_Mac EnsureFolderPath:nothing]);
    EXPECT_EQ([PathUtils_Mac ExpandPath:nothing], nil);
    EXPECT_EQ([[PathUtils_Mac EnumAllItemsInFolder:nothing:NO] count], 0U);
    NSInteger code = 4711;
    EXPECT_FALSE([PathUtils_Mac KSDeleteFile:nothing:&code]);
    EXPECT_EQ(code, 4711);
    EXPECT_FALSE([PathUtils_Mac KSDeleteFolder:nothing]);
    EXPECT_FALSE([PathUtils_Mac KSCopyFolder:nothing:In("a"):YES]);
    EXPECT_FALSE([PathUtils_Mac KSCopyFolder:In(""):nothing:YES]);
}

}  // namespace
