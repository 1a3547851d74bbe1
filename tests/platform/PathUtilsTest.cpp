// What the operations do in the file system; PathRulesTest.cpp has those that only look at text.
#include "platform/PathUtils.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

namespace fs = std::filesystem;

namespace {

std::wstring Wide(const std::string& ascii) {
    return std::wstring(ascii.begin(), ascii.end());
}

class Files : public testing::Test {
  protected:
    std::wstring In(const std::string& name) const { return Wide(folder / name); }

    const TemporaryFolder folder;
};

class Ensuring : public Files {
  protected:
    // New folders are open to everybody whatever the umask.
    Ensuring() : umaskBefore(umask(077)) {}
    ~Ensuring() override { umask(umaskBefore); }

  private:
    const mode_t umaskBefore;
};

TEST_F(Files, DirectoriesAndFilesAreToldApart) {
    WriteFile(folder / "file", "x");
    fs::create_directory(folder / "sub");
    fs::create_symlink("file", folder / "link to file");
    fs::create_symlink("sub", folder / "link to sub");
    fs::create_symlink("nowhere", folder / "dangling");

    EXPECT_TRUE(PathUtils::DirectoryExists(In("sub")));
    EXPECT_TRUE(PathUtils::DirectoryExists(In("link to sub")));
    EXPECT_FALSE(PathUtils::FileExists(folder / "sub"));
    EXPECT_FALSE(PathUtils::FileExists(folder / "link to sub"));
    EXPECT_TRUE(PathUtils::FileExists(folder / "file"));
    EXPECT_TRUE(PathUtils::FileExists(folder / "link to file"));
    EXPECT_FALSE(PathUtils::DirectoryExists(In("file")));
    for (const char* name : {"missing", "dangling"}) {
        EXPECT_FALSE(PathUtils::DirectoryExists(In(name))) << name;
        EXPECT_FALSE(PathUtils::FileExists(folder / name)) << name;
    }
    EXPECT_FALSE(PathUtils::DirectoryExists(L""));
    EXPECT_FALSE(PathUtils::FileExists(""));
}

TEST_F(Files, ARunOfSeparatorsCountsAsOne) {
    fs::create_directory(folder / "sub");
    const std::string doubled = "//private//tmp//" + fs::path(folder.path()).filename().string();
    EXPECT_TRUE(PathUtils::DirectoryExists(Wide(doubled + "////sub//")));
    EXPECT_TRUE(PathUtils::EnsureFolderExists(Wide(doubled + "////new//")));
    EXPECT_TRUE(fs::is_directory(folder / "new"));
}

TEST_F(Ensuring, AMissingFolderIsMadeWithThoseAboveIt) {
    EXPECT_TRUE(PathUtils::EnsureFolderExists(In("a/b/c")));
    for (const char* name : {"a", "a/b", "a/b/c"}) {
        EXPECT_EQ(ModeOf(folder / name), 0777U) << name;
    }
}

TEST_F(Ensuring, AnExistingFolderIsLeftAsItIs) {
    fs::create_directory(folder / "a");
    ASSERT_EQ(chmod((folder / "a").c_str(), 0711), 0);
    EXPECT_TRUE(PathUtils::EnsureFolderExists(In("a")));
    EXPECT_TRUE(PathUtils::EnsureFolderExists(In("a\\\\  ")));
    EXPECT_TRUE(PathUtils::EnsureFolderExists(In("a/b")));
    EXPECT_EQ(ModeOf(folder / "a"), 0711U);
}

TEST_F(Ensuring, EndingBackslashesAndBlanksAreNotPartOfTheName) {
    EXPECT_TRUE(PathUtils::EnsureFolderExists(In("a\\\\ ")));
    EXPECT_TRUE(fs::is_directory(folder / "a"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST_F(Ensuring, EachBackslashEndsAFolderOfItsOwn) {
    EXPECT_TRUE(PathUtils::EnsureFolderExists(In("a\\b\\c")));
    // To this file system the backslash is a letter like any other.
    for (const char* name : {"a", "a\\b", "a\\b\\c"}) {
        EXPECT_TRUE(fs::is_directory(folder / name)) << name;
    }
}

TEST_F(Ensuring, AFolderThatCannotBeMadeFails) {
    WriteFile(folder / "file", "x");
    EXPECT_FALSE(PathUtils::EnsureFolderExists(In("file")));
    EXPECT_FALSE(PathUtils::EnsureFolderExists(In("file/below")));
    EXPECT_FALSE(PathUtils::EnsureFolderExists(In("file\\below")));
    EXPECT_FALSE(fs::exists(folder / "file\\below"));  // ended at the first failure
    EXPECT_EQ(ReadFile(folder / "file"), "x");

    fs::create_directory(folder / "closed");
    ASSERT_EQ(chmod((folder / "closed").c_str(), 0555), 0);
    EXPECT_FALSE(PathUtils::EnsureFolderExists(In("closed/a")));
}

TEST_F(Ensuring, AnEmptyPathIsThereAlready) {
    EXPECT_TRUE(PathUtils::EnsureFolderExists(L""));
    EXPECT_TRUE(PathUtils::EnsureFolderExists(L"   "));
    EXPECT_TRUE(PathUtils::EnsureFolderExists(L"\\\\ "));
}

// Wide characters become bytes of the same value, and those bytes are taken for Mac Roman.
TEST_F(Ensuring, APathOfOtherLettersIsAnotherPath) {
    EXPECT_TRUE(PathUtils::EnsureFolderExists(In("") + L"Z\u00FCrich"));
    EXPECT_TRUE(fs::is_directory(folder / "Z\u00B8rich"));
    EXPECT_FALSE(PathUtils::DirectoryExists(L"/\u6771\u4EAC")) << "no byte has that value";
}

TEST_F(Ensuring, OfTheStoredPathTreatsWhatIsBeforeEachBackslash) {
    PathUtils utils;
    utils.SetPath(In("a\\b\\c"));
    EXPECT_FALSE(utils.EnsureFolderPath());  // made just now: that is meant
    EXPECT_TRUE(fs::is_directory(folder / "a"));
    EXPECT_TRUE(fs::is_directory(folder / "a\\b"));
    EXPECT_FALSE(fs::exists(folder / "a\\b\\c"));
    EXPECT_TRUE(utils.EnsureFolderPath());
}

TEST_F(Ensuring, OfTheStoredPathGoesOnAfterAFailure) {
    WriteFile(folder / "a", "x");
    PathUtils utils;
    utils.SetPath(In("a\\b\\c"));
    EXPECT_FALSE(utils.EnsureFolderPath());
    EXPECT_TRUE(fs::is_directory(folder / "a\\b"));
    EXPECT_FALSE(utils.EnsureFolderPath());  // the file is still no folder
}

TEST_F(Ensuring, OfAStoredPathWithoutBackslashesIsDoneAlready) {
    PathUtils utils;
    utils.SetPath(In("a/b"));
    EXPECT_TRUE(utils.EnsureFolderPath());
    EXPECT_FALSE(fs::exists(folder / "a"));
    utils.SetPath(L"\\a");  // a leading backslash names no folder
    EXPECT_TRUE(utils.EnsureFolderPath());
    utils.SetPath(L"");
    EXPECT_TRUE(utils.EnsureFolderPath());
}

TEST_F(Files, ATildeIsTheHomeFolder) {
    EXPECT_EQ(PathUtils::ExpandPath(L"~/Library"), L"/Users/alex/Library");
    EXPECT_EQ(PathUtils::ExpandPath(L"~"), L"/Users/alex");
    EXPECT_EQ(PathUtils::ExpandPath(L"/a/~"), L"/a/~");
    EXPECT_EQ(PathUtils::ExpandPath(L""), L"");
}

TEST_F(Files, ItemsAreListedAtEveryDepth) {
    fs::create_directories(folder / "a/b");
    fs::create_directory(folder / "empty");
    WriteFile(folder / "a/b/file", "");
    WriteFile(folder / ".hidden", "");
    fs::create_symlink("a", folder / "link");

    const auto set = [](const std::vector<std::wstring>& items) {
        return std::multiset<std::wstring>(items.begin(), items.end());
    };
    EXPECT_EQ(
        set(PathUtils::EnumAllItemsInFolder(In(""), false)),
        (std::multiset<std::wstring>{L"a", L"a/b", L"a/b/file", L"empty", L".hidden", L"link"}));
    EXPECT_EQ(set(PathUtils::EnumAllItemsInFolder(In(""), true)),
              (std::multiset<std::wstring>{L"a", L"a/b", L"empty", L"link"}));
}

TEST_F(Files, ANameIsListedAsTheBytesOfItsUtf8Form) {
    WriteFile(folder / "Zürich", "");
    EXPECT_EQ(PathUtils::EnumAllItemsInFolder(In(""), false),
              std::vector<std::wstring>{L"Z\u00C3\u00BCrich"});
}

TEST_F(Files, AFolderThatCannotBeReadHoldsNothing) {
    WriteFile(folder / "file", "");
    fs::create_directories(folder / "closed/sub");
    ASSERT_EQ(chmod((folder / "closed").c_str(), 0), 0);
    for (const bool foldersOnly : {false, true}) {
        EXPECT_TRUE(PathUtils::EnumAllItemsInFolder(In("missing"), foldersOnly).empty());
        EXPECT_TRUE(PathUtils::EnumAllItemsInFolder(In("file"), foldersOnly).empty());
        EXPECT_TRUE(PathUtils::EnumAllItemsInFolder(In("closed"), foldersOnly).empty());
        EXPECT_TRUE(PathUtils::EnumAllItemsInFolder(L"", foldersOnly).empty());
    }
    ASSERT_EQ(chmod((folder / "closed").c_str(), 0700), 0);
}

TEST_F(Files, AFileIsDeleted) {
    WriteFile(folder / "Zurich", "x");
    long code = 4711;
    EXPECT_TRUE(PathUtils::KSDeleteFile(folder / "Zurich", &code));
    EXPECT_FALSE(fs::exists(folder / "Zurich"));
    EXPECT_EQ(code, 4711);
}

// Narrow paths are taken for Mac Roman: one in UTF-8 names another file.
TEST_F(Files, AFileOfAnotherNameIsNotDeleted) {
    WriteFile(folder / "Zürich", "x");
    WriteFile(folder / "Z√ºrich", "x");
    EXPECT_TRUE(PathUtils::KSDeleteFile(folder / "Zürich", nullptr));
    EXPECT_TRUE(fs::exists(folder / "Zürich"));
    EXPECT_FALSE(fs::exists(folder / "Z√ºrich"));
}

TEST_F(Files, WhatIsNoFileIsNotDeletedAsOne) {
    fs::create_directory(folder / "sub");
    long code = 4711;
    EXPECT_FALSE(PathUtils::KSDeleteFile(folder / "sub", &code));
    EXPECT_FALSE(PathUtils::KSDeleteFile(folder / "missing", &code));
    EXPECT_FALSE(PathUtils::KSDeleteFile("", &code));
    EXPECT_FALSE(PathUtils::KSDeleteFile("\xff", &code));
    EXPECT_EQ(code, 4711);
    EXPECT_TRUE(fs::is_directory(folder / "sub"));
}

TEST_F(Files, ADeletionThatFailsTellsThePlatformsCode) {
    fs::create_directory(folder / "closed");
    WriteFile(folder / "closed/file", "x");
    ASSERT_EQ(chmod((folder / "closed").c_str(), 0555), 0);
    long code = 4711;
    EXPECT_FALSE(PathUtils::KSDeleteFile(folder / "closed/file", &code));
    EXPECT_EQ(code, 513);  // NSFileWriteNoPermissionError
    EXPECT_FALSE(PathUtils::KSDeleteFile(folder / "closed/file", nullptr));
    ASSERT_EQ(chmod((folder / "closed").c_str(), 0755), 0);
    EXPECT_TRUE(PathUtils::KSDeleteFile(folder / "closed/file", nullptr));
}

TEST_F(Files, AFolderIsDeletedWithAllItHolds) {
    fs::create_directories(folder / "sub/deep");
    WriteFile(folder / "sub/deep/file", "x");
    WriteFile(folder / "file", "x");
    EXPECT_TRUE(PathUtils::KSDeleteFolder(folder / "sub"));
    EXPECT_FALSE(fs::exists(folder / "sub"));
    EXPECT_FALSE(PathUtils::KSDeleteFolder(folder / "sub"));
    EXPECT_FALSE(PathUtils::KSDeleteFolder(folder / "file"));
    EXPECT_FALSE(PathUtils::KSDeleteFolder(""));
    EXPECT_TRUE(fs::exists(folder / "file"));
}

TEST_F(Files, AFileIsCopied) {
    WriteFile(folder / "from", "Zürich");
    for (const bool overwrite : {false, true}) {
        fs::remove(folder / "to");
        EXPECT_TRUE(PathUtils::KSCopyFile(folder / "from", folder / "to", overwrite));
        EXPECT_EQ(ReadFile(folder / "to"), "Zürich");
        EXPECT_EQ(ReadFile(folder / "from"), "Zürich");
    }
}

TEST_F(Files, AFolderIsCopiedWithAllItHolds) {
    fs::create_directories(folder / "from/deep");
    WriteFile(folder / "from/deep/file", "x");
    EXPECT_TRUE(PathUtils::KSCopyFile(folder / "from", folder / "to", false));
    EXPECT_EQ(ReadFile(folder / "to/deep/file"), "x");
}

TEST_F(Files, AnExistingDestinationIsNeverReplaced) {
    WriteFile(folder / "from", "new");
    WriteFile(folder / "to", "old");
    EXPECT_FALSE(PathUtils::KSCopyFile(folder / "from", folder / "to", false));
    EXPECT_FALSE(PathUtils::KSCopyFile(folder / "from", folder / "to", true));
    EXPECT_EQ(ReadFile(folder / "to"), "old");
}

TEST_F(Files, WithoutASourceOrAPlaceNothingIsCopied) {
    WriteFile(folder / "from", "x");
    EXPECT_FALSE(PathUtils::KSCopyFile(folder / "missing", folder / "to", true));
    EXPECT_FALSE(PathUtils::KSCopyFile("", folder / "to", true));
    EXPECT_FALSE(PathUtils::KSCopyFile(folder / "from", folder / "missing/to", true));
    EXPECT_FALSE(PathUtils::KSCopyFile(folder / "from", "", true));
    EXPECT_FALSE(fs::exists(folder / "to"));
}

TEST_F(Files, AFileIsMoved) {
    WriteFile(folder / "from", "x");
    EXPECT_TRUE(PathUtils::KSMoveFile(folder / "from", folder / "to", false));
    EXPECT_EQ(ReadFile(folder / "to"), "x");
    EXPECT_FALSE(fs::exists(folder / "from"));
}

TEST_F(Files, TheSourceIsDeletedEvenWhenItCouldNotBeCopied) {
    for (const bool overwrite : {false, true}) {
        WriteFile(folder / "from", "new");
        WriteFile(folder / "to", "old");
        EXPECT_FALSE(PathUtils::KSMoveFile(folder / "from", folder / "to", overwrite));
        EXPECT_EQ(ReadFile(folder / "to"), "old");
        EXPECT_FALSE(fs::exists(folder / "from"));
    }
}

TEST_F(Files, AFolderIsCopiedButNotDeletedByAMove) {
    fs::create_directory(folder / "from");
    EXPECT_FALSE(PathUtils::KSMoveFile(folder / "from", folder / "to", false));
    EXPECT_TRUE(fs::is_directory(folder / "from"));
    EXPECT_TRUE(fs::is_directory(folder / "to"));
}

}  // namespace
