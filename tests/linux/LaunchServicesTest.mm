#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/AppleBundle.h"
#include "tests/support/Command.h"
#include "tests/support/ErrorChecks.h"

namespace {

std::string home;

}  // namespace

// Takes the place of the user's home: its Applications folder is the one that a test may fill.
NSString* NSHomeDirectory() {
    return Text(home);
}

namespace {

class LaunchServices : public testing::Test {
  protected:
    LaunchServices() {
        home = folder_.path();
        folder_.MakeFolder("Applications");
    }
    ~LaunchServices() override { [pool_ release]; }

    void Install(const std::string& application, const std::string& identifier) {
        MakeBundle(folder_, "Applications/" + application, Entry("CFBundleIdentifier", identifier));
    }

    /// The path that the answer's URL stands for below the Applications folder, or the status.
    std::string Find(NSString* identifier) {
        CFURLRef url = nullptr;
        const OSStatus status =
            LSFindApplicationForInfo(0, (CFStringRef)identifier, nullptr, nullptr, &url);
        if (status != 0) {
            EXPECT_EQ(url, nullptr);
            return std::to_string(status);
        }
        const std::string text = Text([NSString stringWithFormat:@"%@", (NSURL*)url]);
        [(NSURL*)url release];
        const std::string start = "file://" + (folder_ / "Applications/");
        EXPECT_EQ(text.rfind(start, 0), 0U) << text;
        return text.substr(start.size());
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
};

TEST_F(LaunchServices, AnApplicationIsFoundByItsIdentifier) {
    Install("Google Chrome.app", "com.google.Chrome");
    Install("Firefox.app", "org.mozilla.firefox");
    EXPECT_EQ(Find(@"com.google.Chrome"), "Google%20Chrome.app/");
    EXPECT_EQ(Find(@"org.mozilla.firefox"), "Firefox.app/");
    EXPECT_EQ(Find(@"com.google"), "-10814");
    EXPECT_EQ(Find(@""), "-10814");
}

TEST_F(LaunchServices, NothingIsFoundWhereNothingIsInstalled) {
    EXPECT_EQ(Find(@"com.google.Chrome"), "-10814");
    home = folder_ / "missing";
    EXPECT_EQ(Find(@"com.google.Chrome"), "-10814");
}

TEST_F(LaunchServices, UpperAndLowerCaseCountAlike) {
    Install("Google Chrome.app", "com.google.chrome");
    EXPECT_EQ(Find(@"com.google.Chrome"), "Google%20Chrome.app/");
}

TEST_F(LaunchServices, AnyNameGivesAUrl) {
    Install("Ü 50%#?;&+.APP", "example.odd");
    EXPECT_EQ(Find(@"example.odd"), "%C3%9C%2050%25%23%3F%3B&+.APP/");
}

TEST_F(LaunchServices, BrokenInfoIsPassedOver) {
    Install("A no text.app", "x");
    WriteInfo(folder_, "Applications/A no text.app",
              "<key>CFBundleIdentifier</key><array><string>example.one</string></array>");
    Install("B truncated.app", "x");
    folder_.Write("Applications/B truncated.app/Contents/Info.plist", "<?xml version=\"1.0\"?><pl");
    Install("C empty.app", "x");
    folder_.Write("Applications/C empty.app/Contents/Info.plist", "");
    Install("D binary.app", "x");
    folder_.Write("Applications/D binary.app/Contents/Info.plist", "bplist00\xFF\xFF\xFF\xFF");
    Install("E unreadable.app", "example.one");
    folder_.Write("Applications/E unreadable.app/Contents/Info.plist", "x", 0);
    folder_.MakeFolder("Applications/F nothing inside.app");
    folder_.Write("Applications/G a file.app", "x");
    folder_.MakeLink("Applications/H dangling.app", "nowhere");
    Install("I good.app", "example.one");
    const OrdinaryUser user;
    testing::internal::CaptureStderr();
    EXPECT_EQ(Find(@"example.one"), "I%20good.app/");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(LaunchServices, WhatCannotBeReadCountsOnlyWhenNothingIsFound) {
    Install("Good.app", "example.one");
    Install("Closed.app", "example.two");
    folder_.Write("Applications/Closed.app/Contents/Info.plist", "x", 0);
    const OrdinaryUser user;
    EXPECT_EQ(Find(@"example.one"), "Good.app/");
    EXPECT_EQ(Find(@"example.two"), "-10810");
}

TEST_F(LaunchServices, AFolderThatCannotBeReadCountsToo) {
    Install("Good.app", "example.one");
    std::filesystem::permissions(folder_ / "Applications", std::filesystem::perms::none);
    {
        const OrdinaryUser user;
        EXPECT_EQ(Find(@"example.one"), "-10810");
    }
    std::filesystem::permissions(folder_ / "Applications", std::filesystem::perms::all);
    std::filesystem::rename(folder_ / "Applications", folder_ / "Elsewhere");
    EXPECT_EQ(Find(@"example.one"), "-10814");
}

TEST_F(LaunchServices, InfoMayBeABinaryPropertyList) {
    Install("Binary.app", "example.binary");
    Python("import plistlib, sys\n"
           "info = plistlib.load(open(sys.argv[1], 'rb'))\n"
           "plistlib.dump(info, open(sys.argv[1], 'wb'), fmt=plistlib.FMT_BINARY)",
           {folder_ / "Applications/Binary.app/Contents/Info.plist"});
    EXPECT_EQ(folder_.Read("Applications/Binary.app/Contents/Info.plist").substr(0, 6), "bplist");
    EXPECT_EQ(Find(@"example.binary"), "Binary.app/");
}

TEST_F(LaunchServices, TheFirstNameWinsAndFoldersAreLookedInto) {
    folder_.MakeFolder("Applications/Utilities");
    Install("Utilities/Inner.app", "example.inner");
    Install("Zebra.app", "example.zebra");
    Install("Aardvark.app", "example.zebra");
    folder_.MakeFolder("Applications/Utilities/Deeper");
    Install("Utilities/Deeper/Deepest.app", "example.deepest");
    Install("Zebra.app/Contents/Nested.app", "example.nested");
    EXPECT_EQ(Find(@"example.inner"), "Utilities/Inner.app/");
    EXPECT_EQ(Find(@"example.zebra"), "Aardvark.app/");
    EXPECT_EQ(Find(@"example.deepest"), "-10814");
    EXPECT_EQ(Find(@"example.nested"), "-10814");
}

TEST_F(LaunchServices, ALinkToAnApplicationCounts) {
    MakeBundle(folder_, "Elsewhere.app", Entry("CFBundleIdentifier", "example.else"));
    folder_.MakeLink("Applications/Link.app", "../Elsewhere.app");
    EXPECT_EQ(Find(@"example.else"), "Link.app/");
}

}  // namespace
