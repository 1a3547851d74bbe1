// Eight threads log at once: in full in a release build, with fewer messages under a sanitizer,
// which needs no crowd to see a race.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/LogFile.h"

namespace {

constexpr int kThreads = 8;
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr int kMessages = 5000;
#else
constexpr int kMessages = 10000;
#endif
constexpr size_t kHeaderLength = 18;  // "HH:MM:SS - INFO : "

// The console echo of so many messages is nothing to look at.
class SilentConsole {
  public:
    SilentConsole() : saved(dup(STDOUT_FILENO)) {
        fflush(stdout);
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        close(null);
    }
    ~SilentConsole() {
        fflush(stdout);
        dup2(saved, STDOUT_FILENO);
        close(saved);
    }
    SilentConsole(const SilentConsole&) = delete;
    SilentConsole& operator=(const SilentConsole&) = delete;

  private:
    int saved;
};

void LogFromAllThreads() {
    const SilentConsole silent;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            for (int message = 0; message < kMessages; ++message) {
                CLogger::WriteLog(CLogger::LevelInfo, "thread %d message %d end", thread, message);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

// Every line is whole, and each thread's messages stand in its own order, none missing.
void ExpectEveryMessage(const std::string& log) {
    std::array<int, kThreads> next = {};
    std::istringstream lines(log);
    std::string line;
    ASSERT_TRUE(std::getline(lines, line));
    ASSERT_EQ(line, "");  // the log begins with a line break
    while (std::getline(lines, line)) {
        const size_t text = line.find_first_not_of(' ', kHeaderLength);
        int thread = -1;
        int message = -1;
        int end = 0;
        ASSERT_EQ(
            sscanf(line.c_str() + text, "thread %d message %d end%n", &thread, &message, &end), 2)
            << line;
        ASSERT_GT(end, 0) << line;
        ASSERT_EQ(line.find_first_not_of(' ', text + static_cast<size_t>(end)), std::string::npos)
            << line;
        ASSERT_EQ(line.substr(8, kHeaderLength - 8), " - INFO : ");
        ASSERT_EQ(message, next.at(static_cast<size_t>(thread))++) << line;
    }
    for (const int count : next) {
        EXPECT_EQ(count, kMessages);
    }
}

TEST(EightThreads, LoseNothingInAPlainLog) {
    const LogFile log;
    ASSERT_TRUE(
        CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    LogFromAllThreads();
    ExpectEveryMessage(log.Bytes());
}

TEST(EightThreads, LoseNothingInAnEncipheredLog) {
    const LogFile log;
    const std::string key = "0123456789abcdef0123456789ABCDEF";
    ASSERT_TRUE(
        CLogger::m_Logger.InitLogger(log.Path(), "", true, KeyBytes(key), 32, CLogger::LevelInfo));
    LogFromAllThreads();
    ExpectEveryMessage(log.Deciphered(key));
}

}  // namespace
