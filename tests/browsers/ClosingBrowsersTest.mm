// The guard and the administrator's alert for real: browsers that run, an alert on a display, a
// user who answers it, scripts with administrator rights.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

#include "browsers/BrowserUtils.h"
#include "privileged/ElevatedRights.h"
#include "tests/support/Asking.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace {

// The middle of the buttons' row, and of each button, where three are centred; one alone is in the
// middle.
constexpr int kRow = 38;
constexpr int kExit = 354;
constexpr int kCloseBrowsers = 241;
constexpr int kRetry = 128;
constexpr int kOk = 241;

const std::string kSafari = "/Applications/Safari.app/Contents/MacOS/Safari";

// Of a process that was started and not waited for.
bool HasEnded(const ChildProcess& process) {
    siginfo_t ended = {};
    return waitid(P_PID, static_cast<id_t>(process.identifier()), &ended,
                  WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid != 0;
}

// A signal is on its way for a moment.
bool EndsSoon(const ChildProcess& process) {
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!HasEnded(process)) {
        if (std::chrono::steady_clock::now() > patience) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

class ClosingBrowsersTest : public testing::Test {
  protected:
    // A program that runs until it is ended, under that name.
    std::unique_ptr<ChildProcess> Start(const std::string& name) {
        const std::string program = folder / name;
        std::filesystem::copy(kSafari, program);
        return std::make_unique<ChildProcess>(program, std::vector<std::string>{program});
    }

    // The guard's decision, when a user presses the button there.
    bool VerifyAndClick(int button, NSString* script) {
        return AskUser(
                   user, [&] { return [BrowserUtils VerifyBrowsers:NO:script]; },
                   [&] { user.Click(button, kRow); }) != NO;
    }

    TemporaryFolder folder;
    DesktopUser user;
};

TEST_F(ClosingBrowsersTest, TheBrowsersOfThisMacAreSeen) {
    EXPECT_FALSE([BrowserUtils AreBrowsersStarted]);
    for (const std::string& program :
         {kSafari, std::string("/Applications/Google Chrome.app/Contents/MacOS/Google Chrome"),
          std::string("/Applications/Microsoft Edge.app/Contents/MacOS/Microsoft Edge"),
          std::string("/Applications/Firefox.app/Contents/MacOS/firefox")}) {
        const ChildProcess browser(program, {program});
        EXPECT_TRUE([BrowserUtils AreBrowsersStarted]) << program;
    }
    EXPECT_FALSE([BrowserUtils AreBrowsersStarted]);
}

TEST_F(ClosingBrowsersTest, ExitStopsAndTheBrowserLives) {
    const ChildProcess browser(kSafari, {kSafari});
    EXPECT_FALSE(VerifyAndClick(kExit, @"exit 0"));
    EXPECT_FALSE(HasEnded(browser));
}

TEST_F(ClosingBrowsersTest, CloseBrowsersRunsTheScriptOnly) {
    const ChildProcess browser(kSafari, {kSafari});
    EXPECT_TRUE(VerifyAndClick(kCloseBrowsers, nil));
    EXPECT_TRUE(VerifyAndClick(kCloseBrowsers, @"id -u > /private/tmp/ran"));
    EXPECT_EQ(std::filesystem::file_size("/private/tmp/ran"), 2U);
    EXPECT_FALSE(HasEnded(browser));
}

TEST_F(ClosingBrowsersTest, RetryGoesOnOnceTheBrowserIsClosed) {
    ChildProcess browser(kSafari, {kSafari});
    EXPECT_TRUE(AskUser(
        user, [] { return [BrowserUtils VerifyBrowsers:YES]; },
        [&] {
            kill(browser.identifier(), SIGKILL);
            browser.Wait();
            user.Click(kRetry, kRow);
        }));
}

TEST_F(ClosingBrowsersTest, AnAlertThatIsClosedGoesOn) {
    const ChildProcess browser(kSafari, {kSafari});
    EXPECT_TRUE(AskAndLook([] { return [BrowserUtils VerifyBrowsers:YES:@"exit 0"]; },
                           [](QWStyleAlert*) {}));
    EXPECT_FALSE(HasEnded(browser));
}

TEST_F(ClosingBrowsersTest, AScriptThatFailsShowsTheAlertAndThenTheBrowsersAreClosed) {
    const ChildProcess browser(kSafari, {kSafari});
    EXPECT_FALSE(AskUser(
        user, [] { return [BrowserUtils removeTraces:@"exit 1"]; },
        [&] {
            EXPECT_FALSE(HasEnded(browser));
            user.Click(kOk, kRow);
        }));
    EXPECT_TRUE(EndsSoon(browser));
}

TEST_F(ClosingBrowsersTest, TheCommandsCloseTheBrowsersAndNothingElse) {
    const char* const browsers[] = {
        "Safari",        "firefox-bin",   "firefox",       "aurora",
        "nightly",       "google chrome", "Google Chrome", "Google Chrome Canary",
        "Microsoft Edge"};
    const char* const others[] = {"safari",   "Safari Technology Preview", "Firefox",
                                  "Keystrel", "Google Chrome Helper",      "Microsoft Edge Beta"};
    std::vector<std::unique_ptr<ChildProcess>> closed;
    std::vector<std::unique_ptr<ChildProcess>> kept;
    for (const std::string name : browsers) {
        closed.push_back(Start(name));
    }
    for (const std::string name : others) {
        kept.push_back(Start(name));
    }
    EXPECT_TRUE([BrowserUtils removeTraces:nil]);
    for (size_t i = 0; i < closed.size(); ++i) {
        EXPECT_TRUE(EndsSoon(*closed[i])) << browsers[i];
    }
    for (size_t i = 0; i < kept.size(); ++i) {
        EXPECT_FALSE(HasEnded(*kept[i])) << others[i];
    }
}

}  // namespace
