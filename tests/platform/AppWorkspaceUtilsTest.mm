#include "platform/AppWorkspaceUtils.h"

#include <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>

#include "platform/AppWorkspaceBridges.h"
#include "tests/support/Files.h"
#include "tests/support/ReplacedMethod.h"

namespace fs = std::filesystem;

// An entry of the list of running applications.
@interface ListedApplication : NSObject {
    NSString* bundleIdentifier;
    BOOL finishedLaunching;
}
@property (nonatomic, copy) NSString* bundleIdentifier;
@property (nonatomic, assign, getter=isFinishedLaunching) BOOL finishedLaunching;
+ (id)withIdentifier:(NSString*)identifier finished:(BOOL)finished;
@end

@implementation ListedApplication
@synthesize bundleIdentifier;
@synthesize finishedLaunching;

+ (id)withIdentifier:(NSString*)identifier finished:(BOOL)finished {
    ListedApplication* application = [[[ListedApplication alloc] init] autorelease];
    [application setBundleIdentifier:identifier];
    [application setFinishedLaunching:finished];
    return application;
}

- (void)dealloc {
    [bundleIdentifier release];
    [super dealloc];
}
@end

namespace {

NSArray* running = nil;

id RunningApplications(id /*receiver*/, SEL /*selector*/) {
    return running;
}

class ListedApplications : public testing::Test {
  protected:
    ~ListedApplications() override { running = nil; }

    static bool IsRunning(NSString* identifier) {
        return [AppWorkspaceUtils IsAppRunning:identifier] != NO;
    }

  private:
    const ReplacedMethod listing {
        ReplacedMethod::InstanceMethod, [NSWorkspace class], @selector(runningApplications),
            reinterpret_cast<IMP>(RunningApplications)
    };
};

TEST_F(ListedApplications, AreComparedByTheirWholeIdentifier) {
    running = [NSArray arrayWithObjects:[ListedApplication withIdentifier:nil finished:YES],
                                        [ListedApplication withIdentifier:@"org.mozilla.firefox"
                                                                 finished:YES],
                                        nil];
    EXPECT_TRUE(IsRunning(@"org.mozilla.firefox"));
    EXPECT_FALSE(IsRunning(@"firefox"));
    EXPECT_FALSE(IsRunning(@"Org.Mozilla.Firefox"));
    EXPECT_FALSE(IsRunning(@"org.mozilla.firefox2"));
    EXPECT_FALSE(IsRunning(@"org.mozilla"));
    EXPECT_FALSE(IsRunning(@""));
    EXPECT_FALSE(IsRunning(nil));
    EXPECT_TRUE(IsAppRunningCPP("org.mozilla.firefox"));
    EXPECT_TRUE(IsAppRunningBridge("org.mozilla.firefox"));
    EXPECT_FALSE(IsAppRunningCPP("firefox"));
    EXPECT_FALSE(IsAppRunningBridge("\xff"));
}

TEST_F(ListedApplications, OneThatIsCalledLikeAProcessMatchesThatWord) {
    running = [NSArray arrayWithObject:[ListedApplication withIdentifier:@"firefox" finished:YES]];
    EXPECT_TRUE(IsRunning(@"firefox"));
}

TEST_F(ListedApplications, OneThatIsStillLaunchingDoesNotEndTheSearch) {
    ListedApplication* launching = [ListedApplication withIdentifier:@"a.b" finished:NO];
    ListedApplication* launched = [ListedApplication withIdentifier:@"a.b" finished:YES];
    running = [NSArray arrayWithObject:launching];
    EXPECT_FALSE(IsRunning(@"a.b"));
    running = [NSArray arrayWithObjects:launching, launched, nil];
    EXPECT_TRUE(IsRunning(@"a.b"));
}

TEST_F(ListedApplications, MayBeNone) {
    running = [NSArray array];
    EXPECT_FALSE(IsRunning(@"a.b"));
    running = nil;
    EXPECT_FALSE(IsRunning(@"a.b"));
}

// A process is there a moment before the kernel tells what it runs.
bool ComesToRun(const std::string& identifier) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!IsAppRunningCPP(identifier)) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        sched_yield();
    }
    return true;
}

TEST(RunningApplication, IsSeenWhileItsProcessLives) {
    const std::string bundle = "/Users/alex/Applications/Some Tool.app";
    fs::create_directories(bundle + "/Contents/MacOS");
    WriteFile(bundle + "/Contents/Info.plist",
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
              "<key>CFBundleIdentifier</key><string>com.example.some-tool</string>"
              "<key>CFBundleExecutable</key><string>Tool</string></dict></plist>");
    std::string program = bundle + "/Contents/MacOS/Tool";
    fs::copy_file("/usr/bin/sleep", program);

    EXPECT_FALSE(IsAppRunningCPP("com.example.some-tool"));
    std::string seconds = "600";
    char* const arguments[] = {&program[0], &seconds[0], nullptr};
    char* const environment[] = {nullptr};
    pid_t process = 0;
    ASSERT_EQ(posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environment), 0);
    EXPECT_TRUE(ComesToRun("com.example.some-tool"));
    EXPECT_FALSE(IsAppRunningCPP("Some Tool"));
    EXPECT_FALSE(IsAppRunningCPP("Tool"));

    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    EXPECT_FALSE(IsAppRunningCPP("com.example.some-tool"));
    fs::remove_all(bundle);
}

}  // namespace
