#include "logging/CLogger.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/support/LogFile.h"

namespace {

const std::string kKey = "0123456789abcdef0123456789ABCDEF";
constexpr size_t kLongestText = 10239;
const std::string kInfoHeader = "\nHH:MM:SS - INFO : ";

std::string Blanks(size_t count) {
    return std::string(count, ' ');
}

// A text as the enciphered log holds it: whole blocks of 16 bytes.
std::string Padded(const std::string& text) {
    return text + Blanks((16 - text.size() % 16) % 16);
}

CLogger::LogLevel Level(int value) {
    return static_cast<CLogger::LogLevel>(value);
}

// How often this process has that file open.
int TimesOpen(const std::string& path) {
    int count = 0;
    for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;  // the iterator's own
        count += std::filesystem::read_symlink(descriptor.path(), gone) == path ? 1 : 0;
    }
    return count;
}

TEST(PlainLog, AMessageIsALineBreakTheHeaderAndTheText) {
    const LogFile log;
    CLogger logger(log.Path(), "ignored", false, nullptr, 0, CLogger::LevelInfo);
    Print(logger, CLogger::LevelInfo, "%s, %d times", "hello", 2);
    Print(logger, CLogger::LevelInfo, "again");
    EXPECT_EQ(WithoutTime(log.Bytes()), kInfoHeader + "hello, 2 times" + kInfoHeader + "again");
}

TEST(PlainLog, EachLevelHasItsWord) {
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    for (int level = 1; level <= 4; ++level) {
        Print(logger, Level(level), "%d", level);
    }
    EXPECT_EQ(WithoutTime(log.Bytes()),
              "\nHH:MM:SS - CRITICAL : 1\nHH:MM:SS - FAILURE : 2"
              "\nHH:MM:SS - WARNING : 3\nHH:MM:SS - INFO : 4");
}

TEST(PlainLog, TheTimeIsTheLocalTime) {
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    const time_t before = time(nullptr);
    Print(logger, CLogger::LevelInfo, "x");
    const time_t after = time(nullptr);

    const std::string bytes = log.Bytes();
    ASSERT_GE(bytes.size(), 9U);
    bool matches = false;
    for (time_t second = before; second <= after; ++second) {
        char expected[16];
        tm local = {};
        strftime(expected, sizeof expected, "%H:%M:%S", localtime_r(&second, &local));
        matches = matches || bytes.substr(1, 8) == expected;
    }
    EXPECT_TRUE(matches) << bytes;
}

TEST(PlainLog, TheConsoleGetsOneMoreLineBreakBeforeAndOneAfter) {
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    testing::internal::CaptureStdout();
    Print(logger, CLogger::LevelInfo, "first");
    Print(logger, CLogger::LevelFailure, "second");
    EXPECT_EQ(WithoutTime(testing::internal::GetCapturedStdout()),
              "\n" + kInfoHeader + "first\n\n\nHH:MM:SS - FAILURE : second\n");
}

TEST(PlainLog, TheFileIsCurrentAfterEveryMessageAndIsAppendedTo) {
    const LogFile log;
    CLogger first(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    CLogger second(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    Print(first, CLogger::LevelInfo, "one");
    EXPECT_EQ(WithoutTime(log.Bytes()), kInfoHeader + "one");
    Print(second, CLogger::LevelInfo, "two");
    Print(first, CLogger::LevelInfo, "three");
    EXPECT_EQ(WithoutTime(log.Bytes()),
              kInfoHeader + "one" + kInfoHeader + "two" + kInfoHeader + "three");
}

TEST(PlainLog, AnEmptyMessageIsItsHeaderAlone) {
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    Print(logger, CLogger::LevelInfo, "%s", "");
    EXPECT_EQ(WithoutTime(log.Bytes()), kInfoHeader);
}

TEST(PlainLog, ATextIsCutWhereTheBufferEnds) {
    for (const size_t length : {10238U, 10239U, 10240U, 10241U, 10242U, 1000000U}) {
        const LogFile log;
        CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
        const std::string text(length, 'x');
        testing::internal::CaptureStdout();
        Print(logger, CLogger::LevelInfo, "%s", text.c_str());
        const std::string cut = text.substr(0, kLongestText);
        EXPECT_EQ(testing::internal::GetCapturedStdout().substr(20), cut + "\n") << length;
        EXPECT_EQ(WithoutTime(log.Bytes()), kInfoHeader + cut) << length;
    }
}

TEST(PlainLog, AFormatThatFailsLeavesTheHeaderAlone) {
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    testing::internal::CaptureStdout();
    Print(logger, CLogger::LevelInfo, "half of %ls",
          L"\U0001F600");  // has no bytes in the C locale
    EXPECT_EQ(WithoutTime(testing::internal::GetCapturedStdout()), "\n" + kInfoHeader + "\n");
    EXPECT_EQ(WithoutTime(log.Bytes()), kInfoHeader);
}

TEST(Threshold, LessSevereMessagesAreDroppedFromFileAndConsole) {
    for (int threshold = 1; threshold <= 4; ++threshold) {
        const LogFile log;
        CLogger logger(log.Path(), "", false, nullptr, 0, Level(threshold));
        testing::internal::CaptureStdout();
        for (int level = threshold + 1; level <= 5; ++level) {
            Print(logger, Level(level), "dropped");
        }
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << threshold;
        EXPECT_EQ(log.Bytes(), "") << threshold;
        Print(logger, Level(threshold), "kept");
        EXPECT_NE(log.Bytes().find("kept"), std::string::npos) << threshold;
    }
}

TEST(Threshold, LevelNoneWritesItsTextWithoutAHeader) {
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelCritical);
    Print(logger, CLogger::LevelCritical, "before");
    testing::internal::CaptureStdout();
    Print(logger, CLogger::LevelNone, "bare");
    // The console shows what the buffer last held in place of the header.
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\nbeforebare\n");
    EXPECT_EQ(WithoutTime(log.Bytes()), "\nHH:MM:SS - CRITICAL : beforebare");
}

TEST(Threshold, LevelsAboveInfoNeedAThresholdAboveInfo) {
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, Level(7));
    Print(logger, CLogger::LevelInfo, "before");
    testing::internal::CaptureStdout();
    Print(logger, Level(7), "bare");
    Print(logger, Level(8), "dropped");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\nbeforebare\n");
    EXPECT_EQ(WithoutTime(log.Bytes()), kInfoHeader + "beforebare");
}

TEST(Threshold, ABufferFullOfCipherTextIsShownWithoutReadingBeyondIt) {
    const LogFile log;
    CLogger logger(log.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo);
    const std::string text(20000, 'x');
    testing::internal::CaptureStdout();
    Print(logger, CLogger::LevelInfo, "%s", text.c_str());
    Print(logger, CLogger::LevelNone, "bare");
    const std::string console = testing::internal::GetCapturedStdout();
    EXPECT_EQ(console.substr(console.size() - 5), "bare\n");
    EXPECT_EQ(log.Bytes().size(), 32U + 10240U + 16U);
}

TEST(EncipheredLog, HeaderAndTextArePaddedAndEncipheredEachOnItsOwn) {
    for (const size_t length : {1U, 15U, 16U, 17U, 31U, 32U, 10223U, 10224U, 10225U, 10239U}) {
        const LogFile log;
        CLogger logger(log.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo);
        const std::string text(length, 'x');
        Print(logger, CLogger::LevelInfo, "%s", text.c_str());
        EXPECT_EQ(WithoutTime(log.Deciphered(kKey)), Padded(kInfoHeader) + Padded(text)) << length;
    }
}

TEST(EncipheredLog, ATextThatIsCutIsPaddedToTheWholeBuffer) {
    for (const size_t length : {10240U, 10241U, 1000000U}) {
        const LogFile log;
        CLogger logger(log.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo);
        const std::string text(length, 'x');
        Print(logger, CLogger::LevelInfo, "%s", text.c_str());
        EXPECT_EQ(WithoutTime(log.Deciphered(kKey)),
                  Padded(kInfoHeader) + text.substr(0, kLongestText) + " ")
            << length;
    }
}

TEST(EncipheredLog, AnEmptyMessageIsItsHeaderAlone) {
    const LogFile log;
    CLogger logger(log.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo);
    Print(logger, CLogger::LevelInfo, "%s", "");
    EXPECT_EQ(WithoutTime(log.Deciphered(kKey)), Padded(kInfoHeader));
}

TEST(EncipheredLog, TheConsoleStaysPlain) {
    const LogFile log;
    CLogger logger(log.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo);
    testing::internal::CaptureStdout();
    Print(logger, CLogger::LevelInfo, "plain");
    EXPECT_EQ(WithoutTime(testing::internal::GetCapturedStdout()), "\n" + kInfoHeader + "plain\n");
}

TEST(InitLogger, LevelNoneSucceedsAndOpensNothing) {
    const LogFile log;
    unlink(log.Path().c_str());
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelNone);
    EXPECT_TRUE(logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelNone));
    Print(logger, CLogger::LevelNone, "nothing");
    EXPECT_NE(access(log.Path().c_str(), F_OK), 0);
}

TEST(InitLogger, FailsForAnEmptyPathAndStaysSilent) {
    CLogger logger("", "", false, nullptr, 0, CLogger::LevelInfo);
    EXPECT_FALSE(logger.InitLogger("", "", false, nullptr, 0, CLogger::LevelInfo));
    testing::internal::CaptureStdout();
    Print(logger, CLogger::LevelCritical, "nothing");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(InitLogger, FailsForAFolderAMissingFolderAndAReadOnlyOne) {
    for (const char* path : {"/private/tmp", "/private/tmp/missing/log", "/System/log"}) {
        const LogFile log;
        CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelNone);
        EXPECT_FALSE(logger.InitLogger(path, "", false, nullptr, 0, CLogger::LevelInfo)) << path;
        testing::internal::CaptureStdout();
        Print(logger, CLogger::LevelCritical, "nothing");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << path;
    }
}

TEST(InitLogger, EncipheringTakesAKeyOf32BytesOnly) {
    const std::string longKey = kKey + kKey;
    for (const uint32_t length : {0U, 16U, 31U, 33U, 64U}) {
        const LogFile log;
        CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelNone);
        EXPECT_FALSE(
            logger.InitLogger(log.Path(), "", true, KeyBytes(longKey), length, CLogger::LevelInfo))
            << length;
        Print(logger, CLogger::LevelCritical, "nothing");
        EXPECT_EQ(log.Bytes(), "") << length;
    }
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelNone);
    EXPECT_FALSE(logger.InitLogger(log.Path(), "", true, nullptr, 32, CLogger::LevelInfo));
}

TEST(InitLogger, AFailureAfterASuccessNeverLetsPlainTextIntoAnEncipheredLog) {
    const LogFile log;
    CLogger logger(log.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo);
    EXPECT_FALSE(logger.InitLogger(log.Path(), "", true, KeyBytes(kKey), 16, CLogger::LevelInfo));
    testing::internal::CaptureStdout();
    Print(logger, CLogger::LevelCritical, "nothing");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    Print(logger, CLogger::LevelNone, "secret");
    EXPECT_EQ(log.Bytes(), "");
}

TEST(InitLogger, ANewFileTakesOver) {
    const LogFile first;
    const LogFile second;
    CLogger logger(first.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo);
    ASSERT_TRUE(logger.InitLogger(second.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    Print(logger, CLogger::LevelInfo, "here");
    EXPECT_EQ(first.Bytes(), "");
    EXPECT_EQ(WithoutTime(second.Bytes()), kInfoHeader + "here");
}

TEST(Destructor, ClosesTheFile) {
    const LogFile log;
    {
        CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
        EXPECT_EQ(TimesOpen(log.Path()), 1);
    }
    EXPECT_EQ(TimesOpen(log.Path()), 0);
}

TEST(InitLogger, ASecondCallLeavesTheEarlierStreamOpen) {
    const LogFile first;
    const LogFile second;
    CLogger logger(first.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    ASSERT_TRUE(logger.InitLogger(second.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    EXPECT_EQ(TimesOpen(first.Path()), 1);
    EXPECT_EQ(TimesOpen(second.Path()), 1);
}

TEST(InitLogger, AFailureForTheKeyLeavesTheFileOpen) {
    const LogFile log;
    CLogger logger(log.Path(), "", true, KeyBytes(kKey), 31, CLogger::LevelInfo);
    EXPECT_EQ(TimesOpen(log.Path()), 1);
}

TEST(InitLogger, AfterASuccessAFailureIsSilentUntilTheNextSuccess) {
    for (const char* path : {"", "/private/tmp/missing/log"}) {
        const LogFile log;
        CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
        ASSERT_FALSE(logger.InitLogger(path, "", false, nullptr, 0, CLogger::LevelInfo));
        testing::internal::CaptureStdout();
        Print(logger, CLogger::LevelCritical, "nothing");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << path;
        EXPECT_EQ(log.Bytes(), "");
        ASSERT_TRUE(logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
        Print(logger, CLogger::LevelCritical, "here");
        EXPECT_EQ(WithoutTime(log.Bytes()), "\nHH:MM:SS - CRITICAL : here");
    }
}

TEST(InitLogger, LevelNoneOfARunningLoggerKeepsItsFileForTextsWithoutAHeader) {
    const LogFile log;
    const LogFile other;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    EXPECT_TRUE(logger.InitLogger(other.Path(), "", false, nullptr, 0, CLogger::LevelNone));
    Print(logger, CLogger::LevelCritical, "nothing");
    Print(logger, CLogger::LevelNone, "text");
    EXPECT_EQ(log.Bytes(), "text");
    EXPECT_EQ(other.Bytes(), "");
}

TEST(LogLevel, IsA32BitNumberWithASign) {
    static_assert(sizeof(CLogger::LogLevel) == 4);
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, Level(-1));
    testing::internal::CaptureStdout();
    Print(logger, CLogger::LevelNone, "nothing");
    Print(logger, Level(-1), "at it");
    Print(logger, Level(-2147483647 - 1), ", below it");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\nat it\n\nat it, below it\n");
    EXPECT_EQ(log.Bytes(), "at it, below it");

    const LogFile other;
    CLogger usual(other.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    Print(usual, Level(-1), "below none");
    EXPECT_EQ(other.Bytes(), "below none");
}

TEST(SetupEmptyLogger, LeavesTheFileOpen) {
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    EXPECT_FALSE(logger.SetupEmptyLogger());
    EXPECT_EQ(TimesOpen(log.Path()), 1);
}

TEST(SetupEmptyLogger, ForgetsTheFileAndAnswersFalse) {
    const LogFile log;
    CLogger logger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo);
    EXPECT_FALSE(logger.SetupEmptyLogger());
    testing::internal::CaptureStdout();
    Print(logger, CLogger::LevelInfo, "console only");
    EXPECT_EQ(WithoutTime(testing::internal::GetCapturedStdout()),
              "\n" + kInfoHeader + "console only\n");
    EXPECT_EQ(log.Bytes(), "");
}

TEST(TheProcessLogger, WriteLogAndTheQueriesSpeakOfIt) {
    const LogFile log;
    ASSERT_TRUE(
        CLogger::m_Logger.InitLogger(log.Path(), "", true, KeyBytes(kKey), 32, CLogger::LevelInfo));
    EXPECT_TRUE(CLogger::IsEnabled());
    EXPECT_TRUE(CLogger::IsEncryptionEnable());
    CLogger::WriteLog(CLogger::LevelWarning, "%s %d", "bytes", 7);
    EXPECT_EQ(WithoutTime(log.Deciphered(kKey)),
              Padded("\nHH:MM:SS - WARNING : ") + Padded("bytes 7"));
    ASSERT_TRUE(
        CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    EXPECT_FALSE(CLogger::IsEncryptionEnable());
}

}  // namespace
