#include <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/AppleBundle.h"
#include "tests/support/ErrorChecks.h"

namespace {

std::string home;

}  // namespace

// Takes the place of the user's home: its Applications folder is the one that a test may fill.
NSString* NSHomeDirectory() {
    return Text(home);
}

namespace {

const std::string kBundle = "Applications/Two Words.app";

class LaunchingApplications : public testing::Test {
  protected:
    LaunchingApplications() {
        home = folder_.path();
        folder_.MakeFolder("Applications");
        EXPECT_EQ(mkfifo((folder_ / "said").c_str(), 0600), 0);
    }
    ~LaunchingApplications() override { [pool_ release]; }

    // An application that tells its arguments to whoever reads "said".
    void Install(const std::string& program, const std::string& keys) {
        MakeBundle(folder_, kBundle, Entry("CFBundleIdentifier", "example.browser") + keys);
        folder_.Write(kBundle + "/Contents/MacOS/" + program,
                      "#!/bin/sh\nexec >" + folder_ / "said" + "\nprintf '<%s>' \"$0\" \"$@\"\n",
                      0755);
    }

    BOOL Launch() {
        return [[NSWorkspace sharedWorkspace] launchApplication:Text(folder_ / kBundle)];
    }

    BOOL Open(NSString* identifier, NSArray* urls) {
        return [[NSWorkspace sharedWorkspace] openURLs:urls
                               withAppBundleIdentifier:identifier
                                               options:NSWorkspaceLaunchDefault
                        additionalEventParamDescriptor:nil
                                     launchIdentifiers:NULL];
    }

    std::string Said() { return folder_.Read("said"); }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
};

TEST_F(LaunchingApplications, TheProgramThatTheBundleNamesIsStarted) {
    Install("the program", Entry("CFBundleExecutable", "the program"));
    EXPECT_TRUE(Launch());
    EXPECT_EQ(Said(), "<" + folder_ / kBundle + "/Contents/MacOS/the program>");
}

TEST_F(LaunchingApplications, ABundleThatNamesNoProgramHasOneOfItsOwnName) {
    Install("Two Words", "");
    EXPECT_TRUE(Launch());
    EXPECT_EQ(Said(), "<" + folder_ / kBundle + "/Contents/MacOS/Two Words>");
}

TEST_F(LaunchingApplications, WhatIsNoApplicationIsNotLaunched) {
    EXPECT_FALSE(Launch());
    MakeBundle(folder_, kBundle, Entry("CFBundleExecutable", "missing"));
    EXPECT_FALSE(Launch());
    folder_.Write(kBundle + "/Contents/MacOS/missing", "no program", 0755);
    EXPECT_FALSE(Launch());
    folder_.Write(kBundle + "/Contents/Info.plist", "<plist>");
    EXPECT_FALSE(Launch());
    EXPECT_FALSE([[NSWorkspace sharedWorkspace] launchApplication:nil]);
    EXPECT_FALSE([[NSWorkspace sharedWorkspace] launchApplication:@""]);
}

TEST_F(LaunchingApplications, AnApplicationFoundByItsIdentifierGetsTheAddresses) {
    Install("browser", Entry("CFBundleExecutable", "browser"));
    NSArray* urls =
        [NSArray arrayWithObjects:[NSURL URLWithString:@"https://example.org/a%20b?c=d&e#f"],
                                  [NSURL URLWithString:@"http://"], nil];
    EXPECT_TRUE(Open(@"example.browser", urls));
    EXPECT_EQ(Said(), "<" + folder_ / kBundle +
                          "/Contents/MacOS/browser><https://example.org/a%20b?c=d&e#f><http://>");
}

TEST_F(LaunchingApplications, AnUnknownApplicationOpensNothing) {
    NSArray* urls = [NSArray arrayWithObject:[NSURL URLWithString:@"http://example.org"]];
    EXPECT_FALSE(Open(@"example.none", urls));
    EXPECT_FALSE(Open(nil, urls));
}

TEST_F(LaunchingApplications, TheDefaultOptionIsApples) {
    EXPECT_EQ(static_cast<NSUInteger>(NSWorkspaceLaunchDefault), 0x10000U);
}

}  // namespace
