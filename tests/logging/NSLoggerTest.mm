#include "logging/NSLogger.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "logging/ProcessorClock.h"
#include "tests/support/LogFile.h"
#include "tests/support/ReplacedMethod.h"

namespace {

class NSLoggerTest : public testing::Test {
  protected:
    NSLoggerTest() {
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    }

    // What the log holds behind the header for a text that is logged as information.
    std::string Logged(NSString* text) {
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
        const size_t before = log.Bytes().size();
        [NSLogger LogInformation:@"%@", text];
        const std::string line = WithoutTime(log.Bytes().substr(before));
        EXPECT_EQ(line.substr(0, header.size()), header);
        return line.substr(header.size());
    }

    const std::string header = "\nHH:MM:SS - INFO : ";
    LogFile log;
};

TEST_F(NSLoggerTest, EachOperationHasItsLevel) {
    [NSLogger LogCritical:@"%@ %d", @"a", 1];
    [NSLogger LogFailure:@"%@ %d", @"b", 2];
    [NSLogger LogWarning:@"%@ %d", @"c", 3];
    [NSLogger LogInformation:@"%@ %d", @"d", 4];
    [NSLogger LogSuccess:@"%@ %d", @"e", 5];
    EXPECT_EQ(WithoutTime(log.Bytes()),
              "\nHH:MM:SS - CRITICAL : a 1\nHH:MM:SS - FAILURE : b 2\nHH:MM:SS - WARNING : c 3"
              "\nHH:MM:SS - INFO : d 4\nHH:MM:SS - INFO : e 5");
}

// A format that is no literal is what this is about.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wformat-security"
TEST_F(NSLoggerTest, ANilFormatDoesNothing) {
    NSString* nothing = nil;
    [NSLogger LogCritical:nothing];
    [NSLogger LogFailure:nothing];
    [NSLogger LogWarning:nothing];
    [NSLogger LogInformation:nothing];
    [NSLogger LogSuccess:nothing];
    EXPECT_EQ(log.Bytes(), "");
}
#pragma clang diagnostic pop

TEST_F(NSLoggerTest, AMissingObjectPrintsAsNull) {
    EXPECT_EQ(Logged(nil), "(null)");
}

TEST_F(NSLoggerTest, TheTextIsFormattedOnceMoreWithoutArguments) {
    EXPECT_EQ(Logged(@"100%% sure"), "100% sure");
    EXPECT_EQ(Logged(@"100% sure"), "100% sure");
    EXPECT_EQ(Logged(@"%%"), "%");
    EXPECT_EQ(Logged(@"%%%"), "%%");
    EXPECT_EQ(Logged(@"%%%%"), "%%");
    EXPECT_EQ(Logged(@"%n"), "%n");
    EXPECT_EQ(Logged(@"%s%s%s%s"), "%s%s%s%s");
    EXPECT_EQ(Logged(@"%%s"), "%s");
    EXPECT_EQ(Logged(@"%1$s %*d %.*f %hhn"), "%1$s %*d %.*f %hhn");
    EXPECT_EQ(Logged(@"file:///Applications/Google%20Chrome.app/"),
              "file:///Applications/Google%20Chrome.app/");
    EXPECT_EQ(Logged(@"%20C"), "%20C");
    EXPECT_EQ(Logged(@"%100000000d"), "%100000000d");
    EXPECT_EQ(Logged(@"ends with %"), "ends with %");
    EXPECT_EQ(Logged(@"%"), "%");
}

TEST_F(NSLoggerTest, AFormatOfTheProgramsOwnIsFormattedTwiceToo) {
    [NSLogger LogInformation:@"%d%%", 50];  // becomes "50%", whose "%" survives
    EXPECT_EQ(WithoutTime(log.Bytes()), header + "50%");
}

TEST_F(NSLoggerTest, TextsAreCutAtTheEndOfTheBufferWhateverTheyHold) {
    for (const size_t length : {0U, 1U, 10238U, 10239U, 10240U, 10241U, 10242U, 1000000U}) {
        for (const char letter : {'x', '%'}) {
            const std::string text(length, letter);
            // A pair of percent signs is written as one.
            const size_t written = letter == '%' ? (length + 1) / 2 : length;
            NSString* string = [NSString stringWithUTF8String:text.c_str()];
            EXPECT_EQ(Logged(string), std::string(written < 10239 ? written : 10239, letter))
                << length << letter;
        }
    }
}

TEST_F(NSLoggerTest, TextIsWrittenAsUtf8) {
    NSString* text = [NSString stringWithUTF8String:"Zürich 東京 😀"];
    EXPECT_EQ(Logged(text), "Zürich 東京 😀");
}

TEST_F(NSLoggerTest, HalfASurrogatePairDoesNotLoseTheText) {
    NSString* text = [[NSString stringWithUTF8String:"begin 😀"] substringToIndex:7];
    EXPECT_EQ(Logged(text), "begin \uFFFD");
}

TEST_F(NSLoggerTest, ATextEndsAtItsFirstNul) {
    const unichar units[] = {'a', 0, 'b'};
    EXPECT_EQ(Logged([NSString stringWithCharacters:units length:3]), "a");
}

TEST_F(NSLoggerTest, TheQueriesAskTheProcessLogger) {
    const std::string key(32, 'k');
    EXPECT_TRUE([NSLogger IsEnabled]);
    EXPECT_FALSE([NSLogger IsEncryptionEnable]);
    ASSERT_TRUE(
        CLogger::m_Logger.InitLogger(log.Path(), "", true, KeyBytes(key), 32, CLogger::LevelInfo));
    EXPECT_TRUE([NSLogger IsEncryptionEnable]);
}

NSDictionary* Environment(id /*process*/, SEL /*selector*/) {
    return [NSDictionary dictionaryWithObjectsAndKeys:@"in the environment", @"MARK", nil];
}

NSArray* Arguments(id /*process*/, SEL /*selector*/) {
    return [NSArray arrayWithObjects:@"/a/program", @"-mail", @"100%", nil];
}

TEST_F(NSLoggerTest, SystemInfoIsFiveLinesInOrder) {
    NSProcessInfo* process = [NSProcessInfo processInfo];
    const ReplacedMethod environment(ReplacedMethod::InstanceMethod, [process class],
                                     @selector(environment), reinterpret_cast<IMP>(Environment));
    const ReplacedMethod arguments(ReplacedMethod::InstanceMethod, [process class],
                                   @selector(arguments), reinterpret_cast<IMP>(Arguments));
    [NSLogger LogSystemInfo];
    const std::string version = [[process operatingSystemVersionString] UTF8String];
    EXPECT_EQ(WithoutTime(log.Bytes()),
              header + "System Info - OS: OSX " + version + "<br>" +  //
                  header + "System Info - Process Name: logging_test<br>" + header +
                  "System Info - Process ID: " + std::to_string(getpid()) + "<br>" + header +
                  "System Info - Environment: {\n    MARK = \"in the environment\";\n}<br><br>" +
                  header + "System Info - Call arguments: /a/program; -mail; 100%<br>");
}

TEST(ProcessorClock, AnswersInHertzOrSaysWhyNot) {
    testing::internal::CaptureStderr();
    const int64_t hertz = get_cpu_freq();
    const std::string error = testing::internal::GetCapturedStderr();
    if (hertz == 0) {
        EXPECT_EQ(error.substr(0, 8), "sysctl: ");
    } else {
        EXPECT_GT(hertz, 100000000);
        EXPECT_LT(hertz, 20000000000);
        EXPECT_EQ(error, "");
    }
}

}  // namespace
