#include <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>

#include "tests/linux/AppleBundle.h"
#include "tests/linux/ChildProcess.h"
#include "tests/linux/ErrorChecks.h"

namespace {

const std::string kLong = "1000";

class RunningApplications : public testing::Test {
  protected:
    ~RunningApplications() override { [pool_ release]; }

    /// A bundle whose program waits for its end.
    std::string Install(const std::string& bundle, const std::string& name,
                        const std::string& keys) {
        MakeBundle(folder_, bundle, keys);
        const std::string program = folder_ / (bundle + "/Contents/MacOS/" + name);
        std::filesystem::copy("/usr/bin/sleep", program);
        return program;
    }

    NSRunningApplication* Of(pid_t process) {
        return [NSRunningApplication runningApplicationWithProcessIdentifier:process];
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
};

TEST_F(RunningApplications, TellWhatTheirBundleSays) {
    const std::string program =
        Install("Google Chrome.app", "Google Chrome",
                Entry("CFBundleIdentifier", "com.google.Chrome") + Entry("CFBundleName", "Chrome") +
                    Entry("CFBundleDisplayName", "Google Ü"));
    const ChildProcess child(program, {program, kLong});
    NSRunningApplication* application = Of(child.identifier());
    ASSERT_NE(application, nil);
    EXPECT_EQ(Text([application bundleIdentifier]), "com.google.Chrome");
    EXPECT_EQ(Text([application localizedName]), "Google Ü");
    EXPECT_EQ([application processIdentifier], child.identifier());
    EXPECT_TRUE([application isFinishedLaunching]);
    EXPECT_FALSE([application isTerminated]);
    EXPECT_EQ(Text([[application bundleURL] absoluteString]),
              "file://" + folder_.path() + "/Google%20Chrome.app/");
    EXPECT_EQ(Text([[application executableURL] path]), program);
    EXPECT_EQ(
        [NSRunningApplication runningApplicationsWithBundleIdentifier:@"com.google.Chrome"].count,
        1U);
}

TEST_F(RunningApplications, TakeTheirNameFromTheBundleOrElseFromItsFolder) {
    const std::string named =
        Install("One.app", "x", Entry("CFBundleName", "Name") + Entry("CFBundleDisplayName", ""));
    const std::string bare = Install("Two Words.app", "x", "");
    const std::string broken = Install("Three.app", "x", "");
    folder_.Write("Three.app/Contents/Info.plist", "<plist");
    const std::string missing = Install("Four.app", "x", "");
    std::filesystem::remove(folder_ / "Four.app/Contents/Info.plist");
    for (const auto& [program, name] :
         {std::pair(named, "Name"), {bare, "Two Words"}, {broken, "Three"}, {missing, "Four"}}) {
        const ChildProcess child(program, {program, kLong});
        EXPECT_EQ(Text([Of(child.identifier()) localizedName]), name);
        EXPECT_EQ([Of(child.identifier()) bundleIdentifier], nil);
    }
}

TEST_F(RunningApplications, AreListedOncePerProcessInTheOrderOfTheirIdentifiers) {
    const std::string program = Install("App.app", "App", Entry("CFBundleIdentifier", "example.a"));
    const ChildProcess first(program, {program, kLong});
    const ChildProcess second(program, {program, kLong});
    NSArray* found = [NSRunningApplication runningApplicationsWithBundleIdentifier:@"example.a"];
    ASSERT_EQ([found count], 2U);
    EXPECT_LT([[found objectAtIndex:0] processIdentifier],
              [[found objectAtIndex:1] processIdentifier]);
}

TEST_F(RunningApplications, KnowAScriptThatItsInterpreterRuns) {
    MakeBundle(folder_, "Script.app", Entry("CFBundleIdentifier", "example.script"));
    const std::string script = folder_ / "Script.app/Contents/MacOS/run it";
    folder_.Write("Script.app/Contents/MacOS/run it", "#!/usr/bin/perl -w\nkill STOP => $$;\n",
                  0755);
    const ChildProcess child(script, {script});
    EXPECT_EQ(Text([Of(child.identifier()) bundleIdentifier]), "example.script");
    EXPECT_EQ(Text([[Of(child.identifier()) executableURL] path]), script);
}

TEST_F(RunningApplications, AreNotTheProgramsThatOnlyNameAnApplication) {
    MakeBundle(folder_, "App.app", Entry("CFBundleIdentifier", "example.named"));
    folder_.Write("App.app/Contents/MacOS/App", "#!/bin/sh\n", 0755);
    const std::string path = folder_ / "App.app/Contents/MacOS/App";
    const ChildProcess reader("/usr/bin/perl", {"/usr/bin/perl", "-esleep 1000", path});
    const ChildProcess inside("/usr/bin/sleep", {"sleep", kLong},
                              folder_ / "App.app/Contents/MacOS");
    EXPECT_EQ(Of(reader.identifier()), nil);
    EXPECT_EQ(Of(inside.identifier()), nil);
    EXPECT_EQ(Of(getpid()), nil);
}

TEST_F(RunningApplications, AreKnownByARelativePathToo) {
    const std::string program = Install("App.app", "App", Entry("CFBundleIdentifier", "example.r"));
    const ChildProcess outer(program, {"App.app/Contents/MacOS/App", kLong}, folder_.path());
    const ChildProcess inner(program, {"./App", kLong}, folder_ / "App.app/Contents/MacOS");
    EXPECT_EQ(Text([Of(outer.identifier()) bundleIdentifier]), "example.r");
    EXPECT_EQ(Text([Of(inner.identifier()) bundleIdentifier]), "example.r");
}

TEST_F(RunningApplications, BelongToTheInnermostBundle) {
    MakeBundle(folder_, "Outer.app", Entry("CFBundleIdentifier", "example.outer"));
    const std::string helper = Install("Outer.app/Contents/Helper.app", "Helper",
                                       Entry("CFBundleIdentifier", "example.helper"));
    const ChildProcess child(helper, {helper, kLong});
    EXPECT_EQ(Text([Of(child.identifier()) bundleIdentifier]), "example.helper");
}

TEST_F(RunningApplications, CanBeEnded) {
    const std::string program = Install("App.app", "App", "");
    ChildProcess asked(program, {program, kLong});
    ChildProcess forced(program, {program, kLong});
    NSRunningApplication* first = Of(asked.identifier());
    EXPECT_TRUE([first terminate]);
    EXPECT_TRUE([Of(forced.identifier()) forceTerminate]);
    EXPECT_EQ(asked.Wait(), SIGTERM);
    EXPECT_EQ(forced.Wait(), SIGKILL);
    EXPECT_TRUE([first isTerminated]);
    EXPECT_FALSE([first terminate]);
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
    NSArray* found = [NSRunningApplication runningApplicationsWithBundleIdentifier:@"example.q"];
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
