#include <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <memory>

#include "tests/support/AppleBundle.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorChecks.h"

namespace {

const std::string kLong = "1000";

class RunningApplications : public testing::Test {
  protected:
    ~RunningApplications() override { [pool_ release]; }

    /// A bundle whose program waits for its end.
    std::string Install(const std::string& bundle, const std::string& name,
                        const std::string& keys) {
        MakeBundle(folder_, bundle, keys);
        std::string program = folder_ / (bundle + "/Contents/MacOS/" + name);
        std::filesystem::copy("/usr/bin/sleep", program);
        return program;
    }

    static BOOL Turn(NSString* mode) {
        return [[NSRunLoop mainRunLoop] runMode:mode beforeDate:[NSDate date]];
    }

    /// The applications with an identifier of that beginning, without a turn of the run loop.
    static NSArray* Known(NSString* beginning) {
        NSMutableArray* matching = [NSMutableArray array];
        for (NSRunningApplication* application in
             [[NSWorkspace sharedWorkspace] runningApplications]) {
            if ([[application bundleIdentifier] hasPrefix:beginning]) {
                [matching addObject:application];
            }
        }
        return matching;
    }

    /// The same after one; every test here has identifiers of its own.
    static NSArray* Running(NSString* beginning) {
        Turn(NSDefaultRunLoopMode);
        return Known(beginning);
    }

    static NSUInteger CountOfNamed(const std::string& name) {
        Turn(NSDefaultRunLoopMode);
        NSUInteger count = 0;
        for (NSRunningApplication* application in
             [[NSWorkspace sharedWorkspace] runningApplications]) {
            count += [[application localizedName] isEqual:Text(name)] &&
                     [application bundleIdentifier] == nil;
        }
        return count;
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
};

TEST_F(RunningApplications, TellWhatTheirBundleSays) {
    const std::string program =
        Install("Google Chrome.app", "Google Chrome",
                Entry("CFBundleIdentifier", "example.says") + Entry("CFBundleName", "Chrome") +
                    Entry("CFBundleDisplayName", "Google Ü"));
    const ChildProcess child(program, {program, kLong});
    NSArray* found = Running(@"example.says");
    ASSERT_EQ([found count], 1U);
    EXPECT_EQ(Text([[found lastObject] localizedName]), "Google Ü");
    EXPECT_TRUE([[found lastObject] isFinishedLaunching]);
}

TEST_F(RunningApplications, ChangeOnlyWithATurnOfTheRunLoopInACommonMode) {
    const std::string program =
        Install("App.app", "App", Entry("CFBundleIdentifier", "example.turn"));
    EXPECT_EQ([Running(@"example.turn") count], 0U);
    {
        const ChildProcess child(program, {program, kLong});
        EXPECT_EQ([Known(@"example.turn") count], 0U);
        Turn(@"a mode of one's own");
        EXPECT_EQ([Known(@"example.turn") count], 0U);
        Turn(NSModalPanelRunLoopMode);
        EXPECT_EQ([Known(@"example.turn") count], 1U);
    }
    EXPECT_EQ([Known(@"example.turn") count], 1U);
    EXPECT_EQ([Running(@"example.turn") count], 0U);
}

TEST_F(RunningApplications, TakeTheirNameFromTheBundleOrElseFromItsFolder) {
    const std::string named = Install(
        "One.app", "x", Entry("CFBundleName", "Named by it") + Entry("CFBundleDisplayName", ""));
    const std::string bare = Install("Two Words.app", "x", "");
    const std::string broken = Install("Three with broken info.app", "x", "");
    folder_.Write("Three with broken info.app/Contents/Info.plist", "<plist");
    const std::string missing = Install("Four without info.app", "x", "");
    std::filesystem::remove(folder_ / "Four without info.app/Contents/Info.plist");
    for (const auto& [program, name] : {std::pair(named, "Named by it"),
                                        {bare, "Two Words"},
                                        {broken, "Three with broken info"},
                                        {missing, "Four without info"}}) {
        const ChildProcess child(program, {program, kLong});
        EXPECT_EQ(CountOfNamed(name), 1U) << name;
    }
}

TEST_F(RunningApplications, AreListedOncePerProcessInTheOrderOfTheirIdentifiers) {
    const std::string one = Install("One.app", "One", Entry("CFBundleIdentifier", "example.a1"));
    const std::string two = Install("Two.app", "Two", Entry("CFBundleIdentifier", "example.a2"));
    const ChildProcess first(two, {two, kLong});
    const ChildProcess second(one, {one, kLong});
    const ChildProcess third(two, {two, kLong});
    NSArray* found = Running(@"example.a");
    ASSERT_EQ([found count], 3U);
    EXPECT_EQ(Text([[found objectAtIndex:0] bundleIdentifier]), "example.a2");
    EXPECT_EQ(Text([[found objectAtIndex:1] bundleIdentifier]), "example.a1");
}

TEST_F(RunningApplications, AreNotTheProgramsThatOnlyNameAnApplication) {
    MakeBundle(folder_, "App.app", Entry("CFBundleIdentifier", "example.named"));
    folder_.Write("App.app/Contents/MacOS/App", "#!/bin/sh\n", 0755);
    const std::string path = folder_ / "App.app/Contents/MacOS/App";
    const ChildProcess reader("/usr/bin/perl", {"/usr/bin/perl", "-esleep 1000", path});
    const ChildProcess inside("/usr/bin/sleep", {"sleep", kLong},
                              folder_ / "App.app/Contents/MacOS");
    EXPECT_EQ([Running(@"example.named") count], 0U);
}

TEST_F(RunningApplications, AreKnownByARelativePathToo) {
    const std::string program = Install("App.app", "App", Entry("CFBundleIdentifier", "example.r"));
    const ChildProcess outer(program, {"App.app/Contents/MacOS/App", kLong}, folder_.path());
    const ChildProcess inner(program, {"./App", kLong}, folder_ / "App.app/Contents/MacOS");
    EXPECT_EQ([Running(@"example.r") count], 2U);
}

TEST_F(RunningApplications, BelongToTheInnermostBundle) {
    MakeBundle(folder_, "Outer.app", Entry("CFBundleIdentifier", "example.outer"));
    const std::string helper = Install("Outer.app/Contents/Helper.app", "Helper",
                                       Entry("CFBundleIdentifier", "example.helper"));
    const ChildProcess child(helper, {helper, kLong});
    EXPECT_EQ([Running(@"example.helper") count], 1U);
    EXPECT_EQ([Running(@"example.outer") count], 0U);
}

TEST_F(RunningApplications, AreFoundQuicklyAmongManyProcesses) {
    std::vector<std::unique_ptr<ChildProcess>> others;
    for (int i = 0; i < 500; ++i) {
        others.push_back(std::make_unique<ChildProcess>(
            "/usr/bin/sleep", std::vector<std::string>{"/usr/bin/sleep", kLong}));
    }
    const std::string program = Install("App.app", "App", Entry("CFBundleIdentifier", "example.q"));
    const ChildProcess child(program, {program, kLong});
    const auto start = std::chrono::steady_clock::now();
    NSArray* found = Running(@"example.q");
    const auto spent = std::chrono::steady_clock::now() - start;
    EXPECT_EQ([found count], 1U);
    EXPECT_LT(spent, std::chrono::seconds(1));
    RecordProperty(
        "microseconds",
        std::to_string(std::chrono::duration_cast<std::chrono::microseconds>(spent).count()));
}

TEST_F(RunningApplications, AskingStartsNoOtherProgramAndSaysNothing) {
    testing::internal::CaptureStderr();
    EXPECT_NE([NSWorkspace sharedWorkspace], nil);
    EXPECT_NE([[NSWorkspace sharedWorkspace] runningApplications], nil);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child process was started";
}

}  // namespace
