// How a message reaches the file: this program takes the place of the platform's write.
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <set>
#include <string>

#include "tests/support/LogFile.h"

namespace {

const std::string kKey = "0123456789abcdef0123456789ABCDEF";
constexpr size_t kLongestText = 10239;

int writes = 0;           // to files, not to the console
int interruptions = 0;    // still to come, each before anything is written
size_t most = SSIZE_MAX;  // what one call writes
int failure = 0;

}  // namespace

extern "C" ssize_t write(int descriptor, const void* bytes, size_t length) {
    if (descriptor > STDERR_FILENO) {
        ++writes;
        if (interruptions > 0) {
            --interruptions;
            errno = EINTR;
            return -1;
        }
        if (failure != 0) {
            errno = failure;
            return -1;
        }
        length = std::min(length, most);
        errno = EINTR;  // of an earlier call: what succeeds leaves it as it is
    }
    return syscall(SYS_write, descriptor, bytes, length);
}

namespace {

class LogWrites : public testing::Test {
  protected:
    LogWrites() {
        interruptions = 0;
        most = SSIZE_MAX;
        failure = 0;
        testing::internal::CaptureStdout();
    }
    ~LogWrites() override { testing::internal::GetCapturedStdout(); }

    void PrintBoth(const std::string& text) {
        writes = 0;
        Print(plain, CLogger::LevelInfo, "%s", text.c_str());
        Print(enciphered, CLogger::LevelInfo, "%s", text.c_str());
    }

    void ExpectBoth(const std::string& text) {
        const std::string expected = "\nHH:MM:SS - INFO : " + text;
        EXPECT_EQ(WithoutTime(plainLog.Bytes()), expected);
        const std::string deciphered = WithoutTime(encipheredLog.Deciphered(kKey));
        EXPECT_EQ(deciphered.substr(0, 19), expected.substr(0, 19));
        EXPECT_EQ(deciphered.substr(32, text.size()), text);
    }

    const LogFile plainLog;
    const LogFile encipheredLog;
    CLogger plain{plainLog.Path(), "", false, nullptr, 0, CLogger::LevelInfo};
    CLogger enciphered{encipheredLog.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo};
};

TEST_F(LogWrites, AMessageIsWrittenInOneCall) {
    for (const size_t length : {0U, 1U, 4096U, 10239U}) {
        PrintBoth(std::string(length, 'x'));
        EXPECT_EQ(writes, 2) << length;
    }
}

TEST_F(LogWrites, AnInterruptedCallIsMadeAgain) {
    interruptions = 3;
    PrintBoth("kept");
    ExpectBoth("kept");
    EXPECT_EQ(writes, 2 + 3);
}

TEST_F(LogWrites, AShortOneIsContinued) {
    most = 7;
    const std::string text(kLongestText, 'x');
    PrintBoth(text);
    ExpectBoth(text);
}

TEST_F(LogWrites, OneThatTakesASingleByteIsContinuedToTheLastByte) {
    most = 1;
    PrintBoth("short");
    ExpectBoth("short");
}

TEST_F(LogWrites, OneThatTakesNothingIsTheLast) {
    most = 0;
    PrintBoth("dropped");
    EXPECT_EQ(writes, 2);
    most = SSIZE_MAX;
    PrintBoth("kept");
    ExpectBoth("kept");
}

TEST_F(LogWrites, AMessageThatCannotBeWrittenIsDroppedAndDoesNotComeLater) {
    failure = ENOSPC;
    PrintBoth("dropped");
    EXPECT_EQ(writes, 2);
    failure = 0;
    PrintBoth("kept");
    ExpectBoth("kept");
}

TEST_F(LogWrites, SeveralProcessesKeepEachMessageWhole) {
    constexpr int kProcesses = 4;
    constexpr int kMessages = 50;
    for (int process = 0; process < kProcesses; ++process) {
        if (fork() == 0) {
            const std::string text(kLongestText, static_cast<char>('a' + process));
            for (int message = 0; message < kMessages; ++message) {
                Print(plain, CLogger::LevelInfo, "%s", text.c_str());
            }
            _exit(0);
        }
    }
    for (int process = 0; process < kProcesses; ++process) {
        int status = -1;
        wait(&status);
        EXPECT_EQ(status, 0);
    }
    const std::string log = WithoutTime(plainLog.Bytes());
    const std::string header = "\nHH:MM:SS - INFO : ";
    const size_t length = header.size() + kLongestText;
    ASSERT_EQ(log.size(), kProcesses * kMessages * length);
    std::set<std::string> messages;
    for (size_t at = 0; at < log.size(); at += length) {
        messages.insert(log.substr(at, length));
    }
    EXPECT_EQ(messages.size(), static_cast<size_t>(kProcesses));
    for (const std::string& message : messages) {
        EXPECT_EQ(message, header + std::string(kLongestText, message.back()));
    }
}

}  // namespace
