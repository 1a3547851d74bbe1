// The operations that only look at text. None asks the platform: NoPathBridges.cpp ends the program
// that does.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/PathUtils.h"

namespace {

std::wstring Appended(const std::wstring& path, const std::wstring& part) {
    PathUtils utils;
    utils.SetPath(path);
    utils.Append(part);
    return utils.Path();
}

/// Rows of an argument and what the operation makes of it.
using Rows = std::vector<std::pair<std::wstring, std::wstring>>;

void ExpectEach(std::wstring (*operation)(const std::wstring&), const Rows& rows) {
    for (const auto& [argument, result] : rows) {
        EXPECT_EQ(operation(argument), result) << testing::PrintToString(argument);
    }
}

TEST(PathRules, APathIsStored) {
    PathUtils utils;
    EXPECT_EQ(utils.Path(), L"");
    utils.SetPath(L"a\\b ");
    EXPECT_EQ(utils.Path(), L"a\\b ");
}

TEST(PathRules, AppendJoinsWithOneBackslash) {
    EXPECT_EQ(Appended(L"a\\ \\ ", L"x"), L"a\\x");
    EXPECT_EQ(Appended(L"a", L"x"), L"a\\x");
    EXPECT_EQ(Appended(L"a \\\\  ", L"x\\"), L"a\\x\\");
    EXPECT_EQ(Appended(L"a/", L"x"), L"a/\\x");
    EXPECT_EQ(Appended(L"", L"x"), L"\\x");
    EXPECT_EQ(Appended(L" \\ ", L"x"), L"\\x");
    EXPECT_EQ(Appended(L"a", L""), L"a\\");
    EXPECT_EQ(Appended(L"a", L"\\x"), L"a\\\\x");
}

TEST(PathRules, TheFileNameIsBehindTheLastBackslash) {
    const Rows rows = {
        {L"a\\b\\c.txt", L"c.txt"}, {L"c.txt", L"c.txt"}, {L"/a/b/c.txt", L"/a/b/c.txt"},
        {L"a\\b\\", L""},           {L"\\", L""},         {L"", L""},
    };
    ExpectEach(PathUtils::GetFileName, rows);
}

TEST(PathRules, TheParentFolderIsBeforeTheLastSlash) {
    const Rows rows = {
        {L"/a/b/c", L"/a/b"}, {L"/a/b/", L"/a/b"}, {L"/a", L""},
        {L"a\\b\\c", L""},    {L"a/b\\c", L"a"},   {L"", L""},
    };
    ExpectEach(PathUtils::GetParentFolder, rows);
}

TEST(PathRules, AnExtensionIsReplaced) {
    EXPECT_EQ(PathUtils::ChangeFileExt(L"a\\b.txt", L".log"), L"a\\b.log");
    EXPECT_EQ(PathUtils::ChangeFileExt(L"a.b.c", L".x"), L"a.b.x");
    EXPECT_EQ(PathUtils::ChangeFileExt(L"a\\b", L".log"), L"a\\b.log");
    EXPECT_EQ(PathUtils::ChangeFileExt(L"a.d\\b", L".log"), L"a.d\\b.log");
    EXPECT_EQ(PathUtils::ChangeFileExt(L"a.d\\", L".log"), L"a.d\\.log");
    EXPECT_EQ(PathUtils::ChangeFileExt(L"a\\.hidden", L".x"), L"a\\.x");
    EXPECT_EQ(PathUtils::ChangeFileExt(L"/a.d/b", L".x"), L"/a.x");  // no backslash in it
    EXPECT_EQ(PathUtils::ChangeFileExt(L"a.txt", L"log"), L"alog");
    EXPECT_EQ(PathUtils::ChangeFileExt(L"a.txt", L""), L"a");
    EXPECT_EQ(PathUtils::ChangeFileExt(L"", L".x"), L".x");
}

TEST(PathRules, BackslashesBecomeSlashes) {
    EXPECT_EQ(PathUtils::ChangeSeparator(L"\\a\\b/c\\"), L"/a/b/c/");
    EXPECT_EQ(PathUtils::ChangeSeparator(L""), L"");
}

TEST(PathRules, EndingSeparatorsGoBlanksFirst) {
    const Rows rows = {
        {L"a\\\\  ", L"a"}, {L"\\\\ ", L""}, {L"a \\", L"a "}, {L"a\\ \\", L"a\\ "},
        {L"/a/ ", L"/a/"},  {L"  ", L""},    {L"", L""},
    };
    ExpectEach(PathUtils::RemoveEndingSeparator, rows);
}

TEST(PathRules, AnEndingSeparatorIsFoundBeforeBlanks) {
    for (const std::string path : {"a\\", "a\\  ", "\\", " \\ "}) {
        EXPECT_TRUE(PathUtils::IsEndingInSeparator(path)) << path;
        EXPECT_TRUE(PathUtils::IsEndingInSeparator(std::wstring(path.begin(), path.end()))) << path;
    }
    for (const std::string path : {"", "   ", "a", "a/", "\\a", "a\\b "}) {
        EXPECT_FALSE(PathUtils::IsEndingInSeparator(path)) << path;
        EXPECT_FALSE(PathUtils::IsEndingInSeparator(std::wstring(path.begin(), path.end())))
            << path;
    }
}

TEST(PathRules, AnEndingSeparatorIsAddedOnce) {
    const Rows rows = {
        {L"", L""}, {L"a", L"a\\"}, {L"a\\ ", L"a\\ "}, {L"/a/", L"/a/\\"}, {L"  ", L"  \\"},
    };
    ExpectEach(PathUtils::EnsureIsEndingInSeparator, rows);
}

TEST(PathRules, PathsAreCombinedWithTwoSlashesUnlessABackslashEndsTheFirst) {
    EXPECT_EQ(PathUtils::CombinePaths("a", "b"), "a//b");
    EXPECT_EQ(PathUtils::CombinePaths("a\\", "b"), "a\\b");
    EXPECT_EQ(PathUtils::CombinePaths("a\\ ", "b"), "a\\ b");
    EXPECT_EQ(PathUtils::CombinePaths("a/", "b"), "a///b");
    EXPECT_EQ(PathUtils::CombinePaths("", ""), "//");
    EXPECT_EQ(PathUtils::CombinePaths("Zürich", "東京"), "Zürich//東京");
}

}  // namespace
