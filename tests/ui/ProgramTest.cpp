// A plain executable that shows an alert: wherever it is started, and soon.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <thread>

#include "tests/support/ChildProcess.h"
#include "tests/support/DesktopUser.h"
#include "tests/support/PrivateDisplay.h"

namespace {

constexpr int kIgnore = 128;
constexpr int kRow = 38;

// A program under a sanitizer is several times slower.
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr auto kLimit = std::chrono::milliseconds(1000);
#else
constexpr auto kLimit = std::chrono::milliseconds(300);
#endif

const std::filesystem::path kProgram = KS_ALERT_PROGRAM;

class Program : public testing::Test {
  protected:
    /// Runs the command, presses Ignore, and returns the result that the command printed.
    int Answer(const std::string& command) {
        const auto start = std::chrono::steady_clock::now();
        const std::unique_ptr<FILE, decltype(&pclose)> pipe(popen(command.c_str(), "r"), &pclose);
        user.SeeAlert();
        const auto seen = std::chrono::steady_clock::now();
        user.Click(kIgnore, kRow);
        int result = -2;
        long waited = 0;
        EXPECT_EQ(std::fscanf(pipe.get(), "%d %ld", &result, &waited), 2);
        tookToAppear = std::chrono::duration_cast<std::chrono::milliseconds>(seen - start) -
                       std::chrono::milliseconds(waited);
        return result;
    }

    DesktopUser user;
    /// Without the time for which the machine was busy with something else.
    std::chrono::milliseconds tookToAppear = {};
};

TEST_F(Program, FindsItsInterfaceFileFromAnyFolder) {
    const std::string folder = kProgram.parent_path();
    const std::string name = kProgram.filename();
    EXPECT_EQ(Answer("cd / && " + kProgram.string()), 2);
    EXPECT_EQ(Answer("cd " + folder + " && ./" + name), 2);
    EXPECT_EQ(Answer("cd " + folder + "/.. && bin/" + name), 2);
    EXPECT_EQ(Answer("cd / && PATH=" + folder + ":$PATH " + name), 2);
}

TEST_F(Program, FindsItsInterfaceFileThroughALink) {
    std::string folder = std::filesystem::temp_directory_path() / "ks-alert-XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const std::filesystem::path link = std::filesystem::path(folder) / "link";
    std::filesystem::create_symlink(kProgram, link);
    EXPECT_EQ(Answer("cd / && " + link.string()), 2);
    std::filesystem::remove_all(folder);
}

TEST_F(Program, IgnoresArgumentsThatCouldBeFiles) {
    EXPECT_EQ(Answer("cd / && " + kProgram.string() + " /etc/passwd some.txt"), 2);
}

/// How many processes have this run's own folder in their environment.
int CountProcesses() {
    const std::string mark = "TEMP=" + std::string(std::getenv("TEMP"));
    int count = 0;
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
        std::ifstream environment(process.path() / "environ");
        const std::string variables(std::istreambuf_iterator<char>(environment), {});
        count += variables.find(mark) != std::string::npos;
    }
    return count;
}

TEST_F(Program, IsToldThatItsAlertWasClosedWhenTheDisplayGoes) {
    auto display = std::make_unique<PrivateDisplay>();
    const std::unique_ptr<FILE, decltype(&pclose)> pipe(popen(kProgram.c_str(), "r"), &pclose);
    DesktopUser().SeeAlert();
    display.reset();
    int result = 0;
    EXPECT_EQ(std::fscanf(pipe.get(), "%d", &result), 1);
    EXPECT_EQ(result, -1);
}

// GNUstep asks for the new keyboard, which nobody answers any more.
TEST_F(Program, IsToldSoWhenTheDisplayGoesAtAChangeOfTheKeyboard) {
    auto display = std::make_unique<PrivateDisplay>();
    const std::unique_ptr<FILE, decltype(&pclose)> pipe(popen(kProgram.c_str(), "r"), &pclose);
    {
        DesktopUser user;
        user.SeeAlert();
        user.SeeKeyboardTaken();
    }
    display->ChangeKeyboardAndFreeze();
    std::this_thread::sleep_for(std::chrono::milliseconds(150));  // it waits for the answer now
    display.reset();
    int result = 0;
    EXPECT_EQ(std::fscanf(pipe.get(), "%d", &result), 1);
    EXPECT_EQ(result, -1);
}

TEST_F(Program, LeavesNoProcessBehind) {
    const int before = CountProcesses();
    ASSERT_GT(before, 0);
    Answer("cd / && " + kProgram.string());
    EXPECT_EQ(CountProcesses(), before);
}

TEST_F(Program, IsEndedByASignalWhileItsAlertStands) {
    for (const int ending : {SIGTERM, SIGINT}) {
        ChildProcess program(kProgram, {kProgram});
        user.SeeAlert();
        kill(program.identifier(), ending);
        user.SeeNoAlert();
        EXPECT_EQ(program.Wait(), ending);
    }
}

// It says so and ends, without another window.
TEST_F(Program, IsEndedByAnExceptionAfterItsAlert) {
    const std::string command = "exec " + kProgram.string() + " then-raise 2>&1";
    const std::unique_ptr<FILE, decltype(&pclose)> pipe(popen(command.c_str(), "r"), &pclose);
    user.SeeAlert();
    user.Click(kIgnore, kRow);
    std::string said;
    for (int next; (next = std::fgetc(pipe.get())) != EOF;) {
        said += static_cast<char>(next);
    }
    EXPECT_NE(said.find("Uncaught exception NSGenericException, reason: Meant"), std::string::npos)
        << said;
}

// It offers no services to others, whose list is locked by a folder that a lost program may leave.
TEST_F(Program, RegistersNowhere) {
    Answer("cd / && " + kProgram.string());
    EXPECT_FALSE(
        std::filesystem::exists(std::filesystem::path(std::getenv("TEMP")) / "NSMessagePort"));
}

TEST_F(Program, ItsAlertIsSoonOnTheScreen) {
    auto quickest = std::chrono::milliseconds::max();
    for (int i = 0; i < 8; ++i) {
        Answer("exec " + kProgram.string());
        quickest = std::min(quickest, tookToAppear);
    }
    std::printf("on the screen after %d ms\n", static_cast<int>(quickest.count()));
    EXPECT_LT(quickest.count(), kLimit.count());
}

}  // namespace
