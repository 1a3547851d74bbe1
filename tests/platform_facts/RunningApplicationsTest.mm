// When the workspace learns of applications. The one that comes and goes here is our own, in a
// scratch folder; on a Mac it needs the session of a user who is logged in at the screen.
#include <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "tests/support/AppleBundle.h"
#include "tests/support/ErrorChecks.h"
#include "tests/support/Files.h"

extern "C" char** environ;

namespace {

NSString* const kIdentifier = @"example.facts.application";
const std::string kProgram = "/facts_application";

class RunningApplications : public testing::Test {
  protected:
    ~RunningApplications() override {
        End();
        [pool_ release];
    }

    /// Starts the application and waits until it says that it is ready.
    void Start() {
        MakeBundle(folder_, "Facts.app",
                   Entry("CFBundleIdentifier", Text(kIdentifier)) +
                       Entry("CFBundleExecutable", kProgram.substr(1)) +
                       "<key>LSUIElement</key><true/>");
        const std::string beside = Text([[NSBundle mainBundle] bundlePath]);
        folder_.Write("Facts.app/Contents/MacOS" + kProgram, ReadFile(beside + kProgram), 0755);
        setenv("LD_LIBRARY_PATH", beside.c_str(), 1);  // a copy lies elsewhere than its libraries
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        std::string path = folder_ / "Facts.app/Contents/MacOS" + kProgram;
        char* const arguments[] = {path.data(), nullptr};
        ASSERT_EQ(posix_spawn(&process_, path.c_str(), &actions, nullptr, arguments, environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        char first = 0;
        EXPECT_EQ(read(ends[0], &first, 1), 1) << "the application ended before it was ready";
        close(ends[0]);
    }

    void End() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
            process_ = 0;
        }
    }

    static bool IsListed() {
        for (NSRunningApplication* application in
             [[NSWorkspace sharedWorkspace] runningApplications]) {
            if ([[application bundleIdentifier] isEqualToString:kIdentifier]) {
                return true;
            }
        }
        return false;
    }

    /// Turns the run loop until the application is listed, or no longer; ten seconds at most.
    static bool IsListedAfterTurns(bool expected) {
        NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:10];
        while (IsListed() != expected && [end timeIntervalSinceNow] > 0) {
            // Without a source a run loop returns at once.
            usleep(10'000);
            [[NSRunLoop mainRunLoop] runMode:NSDefaultRunLoopMode
                                  beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.01]];
        }
        return IsListed();
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
    pid_t process_ = 0;
};

TEST_F(RunningApplications, ChangeOnlyWithATurnOfTheRunLoop) {
    EXPECT_FALSE(IsListed());
    Start();
    EXPECT_FALSE(IsListed());
    EXPECT_TRUE(IsListedAfterTurns(true));
    End();
    EXPECT_TRUE(IsListed());
    EXPECT_FALSE(IsListedAfterTurns(false));
}

}  // namespace
