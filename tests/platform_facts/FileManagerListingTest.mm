// Listing folders. The order is the disk's own, so that names are sorted here.
#include <gtest/gtest.h>

#include <cerrno>

#include "tests/support/FileFixture.h"

namespace {

class FileManagerListing : public FileFixture {
  protected:
    std::string Contents(const std::string& path) {
        return Joined([files_ contentsOfDirectoryAtPath:Text(path) error:&error_]);
    }
    std::string Subpaths(const std::string& path) {
        return Joined([files_ subpathsOfDirectoryAtPath:Text(path) error:&error_]);
    }
    static std::string Joined(NSArray* names) {
        NSArray* sorted = [names sortedArrayUsingSelector:@selector(compare:)];
        return Text(names == nil ? nil : [sorted componentsJoinedByString:@"|"]);
    }
};

TEST_F(FileManagerListing, ContentsAreShallow) {
    folder_.Write("b c", "");
    folder_.Write(".hidden", "");
    folder_.Write("z%20", "");
    folder_.MakeFolder("a");
    folder_.Write("a/inner", "");
    folder_.MakeLink("dangling", "nothing");
    EXPECT_EQ(Contents(folder_.path()), ".hidden|a|b c|dangling|z%20");
    EXPECT_EQ(Contents(folder_.path() + "//"), ".hidden|a|b c|dangling|z%20");
    EXPECT_EQ(error_, nil);
}

TEST_F(FileManagerListing, AnEmptyFolderIsAnEmptyArray) {
    EXPECT_EQ(Contents(folder_.path()), "");
    EXPECT_EQ(Subpaths(folder_.path()), "");
}

TEST_F(FileManagerListing, SubpathsGoAllTheWayDownButNotThroughLinks) {
    folder_.MakeFolder("a");
    folder_.MakeFolder("a/b");
    folder_.Write("a/b/c", "");
    folder_.Write("z", "");
    folder_.MakeLink("a/up", "..");
    folder_.MakeLink("link", "a");
    EXPECT_EQ(Subpaths(folder_.path()), "a|a/b|a/b/c|a/up|link|z");
    EXPECT_EQ(error_, nil);
}

TEST_F(FileManagerListing, WhatCannotBeListedIsAnError) {
    folder_.Write("file", "");
    folder_.MakeFolder("closed", 0);
    const OrdinaryUser user;
    EXPECT_EQ(Contents(folder_ / "missing"), "(nil)");
    EXPECT_EQ(Text([error_ domain]), "NSCocoaErrorDomain");
    EXPECT_EQ([error_ code], 260);
    EXPECT_EQ(Text([error_ localizedDescription]), "The folder “missing” doesn’t exist.");
    NSDictionary* info = [error_ userInfo];
    EXPECT_EQ(Text((NSString*)[info objectForKey:@"NSFilePath"]), folder_ / "missing");
    EXPECT_TRUE([[info objectForKey:@"NSUserStringVariant"] isEqual:@[ @"Folder" ]]);
    NSError* underlying = [info objectForKey:NSUnderlyingErrorKey];
    EXPECT_EQ(Text([underlying domain]), "NSOSStatusErrorDomain");
    EXPECT_EQ([underlying code], -43);
    EXPECT_EQ(Contents(folder_ / "file"), "(nil)");
    ExpectCocoaError(error_, 256, ENOTDIR, folder_ / "file");
    EXPECT_EQ(Contents(folder_ / "closed"), "(nil)");
    ExpectCocoaError(error_, 257, EACCES, folder_ / "closed");
    EXPECT_EQ(Subpaths(folder_ / "missing"), "(nil)");
    EXPECT_EQ([error_ code], 260);
    EXPECT_EQ(Subpaths(folder_ / "closed"), "(nil)");
    ExpectCocoaError(error_, 257, EACCES, folder_ / "closed");
}

// No published code tells which path the error names.
TEST_F(FileManagerListing, OneUnreadableFolderInsideFailsTheDeepListing) {
    folder_.MakeFolder("a");
    folder_.MakeFolder("a/closed", 0);
    folder_.Write("open", "");
    const OrdinaryUser user;
    EXPECT_EQ(Contents(folder_.path()), "a|open");
    EXPECT_EQ(Subpaths(folder_.path()), "(nil)");
    ExpectCocoaError(error_, 257, EACCES, folder_.path());
}

}  // namespace
