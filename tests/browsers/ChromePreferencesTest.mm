// The edits of Chrome's preferences, on a real file.
#include "browsers/ChromePreferences.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <fstream>
#include <stdexcept>

#include "tests/support/Files.h"
#include "tests/support/ReplacedMethod.h"
#include "tests/support/TemporaryFolder.h"

// Freed memory counts as used until AddressSanitizer gives it back: let it do so at once.
extern "C" const char* __asan_default_options() {
    return "quarantine_size_mb=1";
}

namespace {

using namespace std::string_literals;

const std::string kFolder = "/Users/alex/Library/Application Support/Google/Chrome/Default";
const std::string kFile = kFolder + "/Preferences";

const std::string kOn = "\"password_manager_enabled\": true";
const std::string kOff = "\"password_manager_enabled\": false";
const std::string kClean = "\"exited_cleanly\": true";
const std::string kCrashed = "\"exited_cleanly\": false";

class ChromePreferencesTest : public testing::Test {
  protected:
    ChromePreferencesTest() {
        [[NSFileManager defaultManager]
                  createDirectoryAtPath:[NSString stringWithUTF8String:kFolder.c_str()]
            withIntermediateDirectories:YES
                             attributes:nil
                                  error:NULL];
    }
    ~ChromePreferencesTest() override {
        chmod(kFolder.c_str(), 0755);
        unlink(kFile.c_str());
    }

    // What the preferences hold after the switch.
    std::string Switched(const std::string& before, BOOL on) {
        WriteFile(kFile, before);
        NSError* error = nil;
        EXPECT_TRUE(SwitchChromePasswordManager(on, &error));
        EXPECT_EQ(error, nil);
        return ReadFile(kFile);
    }

    void ExpectUnchanged(const std::string& text) {
        EXPECT_EQ(Switched(text, YES), text);
        EXPECT_EQ(Switched(text, NO), text);
    }
};

TEST_F(ChromePreferencesTest, AnExistingSettingIsSwitched) {
    EXPECT_EQ(Switched("{" + kOn + "}", NO), "{" + kOff + "}");
    EXPECT_EQ(Switched("{" + kOff + "}", YES), "{" + kOn + "}");
    EXPECT_EQ(Switched("{" + kOff + "}", NO), "{" + kOff + "}");
    EXPECT_EQ(Switched("{" + kOn + "}", YES), "{" + kOn + "}");
}

TEST_F(ChromePreferencesTest, AMissingSettingIsAddedBehindACleanExit) {
    EXPECT_EQ(Switched("{" + kClean + "}", NO),
              "{\"exited_cleanly\": true, \n\t\t\"password_manager_enabled\": false}");
    EXPECT_EQ(Switched("{" + kClean + "}", YES),
              "{\"exited_cleanly\": true, \n        \"password_manager_enabled\": true}");
}

TEST_F(ChromePreferencesTest, AMissingSettingIsAddedBehindACrash) {
    EXPECT_EQ(Switched("{" + kCrashed + "}", NO),
              "{\"exited_cleanly\": false, \n\t\t\"password_manager_enabled\": false}");
    EXPECT_EQ(Switched("{" + kCrashed + "}", YES),
              "{\"exited_cleanly\": false, \n        \"password_manager_enabled\": true}");
}

TEST_F(ChromePreferencesTest, OnlyTheFirstRuleThatAppliesIsFollowed) {
    EXPECT_EQ(Switched(kClean + kCrashed + kOn, NO), kClean + kCrashed + kOff);
    EXPECT_EQ(Switched(kClean + kCrashed, NO),
              kClean + ", \n\t\t\"password_manager_enabled\": false" + kCrashed);
    // The bare key decides, wherever it stands.
    ExpectUnchanged("\"old_password_manager_enabled_too\": 1, " + kClean + kCrashed);
}

TEST_F(ChromePreferencesTest, EveryOccurrenceIsReplaced) {
    EXPECT_EQ(Switched(kOn + kOn + " " + kOff + kOn, NO), kOff + kOff + " " + kOff + kOff);
    EXPECT_EQ(Switched(kClean + "\n" + kClean, YES),
              kClean + ", \n        \"password_manager_enabled\": true\n" + kClean +
                  ", \n        \"password_manager_enabled\": true");
}

TEST_F(ChromePreferencesTest, OtherBlanksBehindTheColonAreNotUnderstood) {
    ExpectUnchanged("{\"password_manager_enabled\":true,\"exited_cleanly\":true}");
    ExpectUnchanged("{\"password_manager_enabled\":false}");
    ExpectUnchanged("{\"password_manager_enabled\":  true}");
    ExpectUnchanged("{\"password_manager_enabled\" : true}");
    ExpectUnchanged("{\"exited_cleanly\":true}");
}

TEST_F(ChromePreferencesTest, TheKeyInsideAnotherTextIsNoSetting) {
    ExpectUnchanged("{\"a_password_manager_enabled\": true}");
    ExpectUnchanged("{\"note\": \"password_manager_enabled: true\"}");
    ExpectUnchanged("{'password_manager_enabled': true}");
    ExpectUnchanged("{\"PASSWORD_MANAGER_ENABLED\": true}");
}

TEST_F(ChromePreferencesTest, AValueThatOnlyBeginsSoIsReplacedAsText) {
    EXPECT_EQ(Switched("\"password_manager_enabled\": trueish", NO),
              "\"password_manager_enabled\": falseish");
}

TEST_F(ChromePreferencesTest, AFileWithoutAnyKeyKeepsItsBytes) {
    ExpectUnchanged("");
    ExpectUnchanged("\n");
    ExpectUnchanged("no JSON at all");
    ExpectUnchanged("{}\r\n");
}

TEST_F(ChromePreferencesTest, EveryOtherByteIsKept) {
    const std::string before =
        "\xEF\xBB\xBF{\"name\": \"Zo\u00eb e\u0301 \u6771\u4eac \U0001F600\r\n"s +
        "\0\u2028\uFEFF\uFFFF\"}\0"s;
    EXPECT_EQ(Switched(before + kOn + before, NO), before + kOff + before);
    EXPECT_EQ(Switched(before + kClean + before, YES),
              before + kClean + ", \n        \"password_manager_enabled\": true" + before);
    ExpectUnchanged("\xEF\xBB\xBF");
    ExpectUnchanged("\xEF\xBB\xBF\xEF\xBB\xBF" + kOn.substr(0, 5) + "\0"s);
}

TEST_F(ChromePreferencesTest, ACombiningCharacterHidesNoSetting) {
    EXPECT_EQ(Switched(kOn + "\u0301", NO), kOff + "\u0301");
}

TEST_F(ChromePreferencesTest, InvalidUtf8IsLeftAloneAndReported) {
    for (const std::string& bad : {"\xFF\xFE"s, "\xC3"s, "\xED\xA0\x80"s, "\xC0\x80"s,
                                   "\xF4\x90\x80\x80"s, "\x80"s, "\xA9"s, "\xA9 1999"s}) {
        for (const BOOL on : {YES, NO}) {
            WriteFile(kFile, kOn + kOff + bad);
            NSError* error = nil;
            EXPECT_FALSE(SwitchChromePasswordManager(on, &error));
            EXPECT_EQ([error code], NSFileReadInapplicableStringEncodingError);
            EXPECT_TRUE([[error description]
                hasPrefix:@"Error Domain=NSCocoaErrorDomain Code=261 \"The file “Preferences” "
                          @"couldn’t be opened using text encoding Unicode (UTF-8).\" "]);
            EXPECT_EQ(ReadFile(kFile), kOn + kOff + bad);
        }
    }
}

TEST_F(ChromePreferencesTest, AMissingFileIsReportedAndNotMade) {
    NSError* error = nil;
    EXPECT_FALSE(SwitchChromePasswordManager(YES, &error));
    EXPECT_EQ([error code], NSFileReadNoSuchFileError);
    EXPECT_FALSE(SwitchChromePasswordManager(YES, NULL));
    EXPECT_NE(access(kFile.c_str(), F_OK), 0);
}

TEST_F(ChromePreferencesTest, AFileThatCannotBeReadIsReported) {
    WriteFile(kFile, kOn);
    ASSERT_EQ(chmod(kFile.c_str(), 0), 0);
    NSError* error = nil;
    EXPECT_FALSE(SwitchChromePasswordManager(NO, &error));
    EXPECT_EQ([error code], NSFileReadNoPermissionError);
    ASSERT_EQ(chmod(kFile.c_str(), 0600), 0);
    EXPECT_EQ(ReadFile(kFile), kOn);
}

TEST_F(ChromePreferencesTest, AFolderInItsPlaceIsReported) {
    ASSERT_EQ(mkdir(kFile.c_str(), 0755), 0);
    NSError* error = nil;
    EXPECT_FALSE(SwitchChromePasswordManager(NO, &error));
    EXPECT_NE(error, nil);
    ASSERT_EQ(rmdir(kFile.c_str()), 0);
}

TEST_F(ChromePreferencesTest, TheFileKeepsItsMode) {
    WriteFile(kFile, kOn);
    for (const mode_t mode : {0600U, 0644U, 0444U, 0777U}) {
        ASSERT_EQ(chmod(kFile.c_str(), mode), 0);
        EXPECT_TRUE(SwitchChromePasswordManager(NO, NULL));
        EXPECT_EQ(ModeOf(kFile), mode);
    }
}

TEST_F(ChromePreferencesTest, AReadOnlyFileIsReplaced) {
    WriteFile(kFile, kOn);
    ASSERT_EQ(chmod(kFile.c_str(), 0400), 0);
    EXPECT_TRUE(SwitchChromePasswordManager(NO, NULL));
    EXPECT_EQ(ReadFile(kFile), kOff);
}

TEST_F(ChromePreferencesTest, AReadOnlyFolderKeepsTheFileWithoutAWord) {
    WriteFile(kFile, kOn);
    ASSERT_EQ(chmod(kFolder.c_str(), 0555), 0);
    NSError* error = nil;
    EXPECT_TRUE(SwitchChromePasswordManager(NO, &error));
    EXPECT_EQ(error, nil);
    EXPECT_EQ(ReadFile(kFile), kOn);
}

TEST_F(ChromePreferencesTest, ALinkIsReplacedByAFile) {
    const TemporaryFolder elsewhere;
    WriteFile(elsewhere / "target", kOn);
    ASSERT_EQ(symlink((elsewhere / "target").c_str(), kFile.c_str()), 0);
    EXPECT_TRUE(SwitchChromePasswordManager(NO, NULL));
    struct stat entry = {};
    ASSERT_EQ(lstat(kFile.c_str(), &entry), 0);
    EXPECT_TRUE(S_ISREG(entry.st_mode));
    EXPECT_EQ(ReadFile(kFile), kOff);
    EXPECT_EQ(ReadFile(elsewhere / "target"), kOn);
}

// Chrome writes its preferences at any time: here, behind each reading.
class RewrittenPreferencesTest : public ChromePreferencesTest {
  protected:
    RewrittenPreferencesTest() {
        readings = 0;
        original = replaced.Original();
    }

    static int readings;
    static void (*rewrite)();

  private:
    static id Read(id receiver, SEL selector, NSString* path, NSUInteger options, NSError** error) {
        using Reading = id (*)(id, SEL, NSString*, NSUInteger, NSError**);
        id data = reinterpret_cast<Reading>(original)(receiver, selector, path, options, error);
        ++readings;
        rewrite();
        return data;
    }

    static IMP original;
    const ReplacedMethod replaced {
        ReplacedMethod::ClassMethod, [NSData class],
            @selector(dataWithContentsOfFile:options:error:), reinterpret_cast<IMP>(Read)
    };
};

int RewrittenPreferencesTest::readings = 0;
void (*RewrittenPreferencesTest::rewrite)() = nullptr;
IMP RewrittenPreferencesTest::original = nullptr;

struct stat InfoOf(const std::string& path) {
    struct stat info = {};
    EXPECT_EQ(stat(path.c_str(), &info), 0);
    return info;
}

void SetTime(const std::string& path, const timespec& time) {
    const timespec times[] = {time, time};
    EXPECT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

// Each is told by one thing alone.

void ChangeTheTime() {
    timespec time = InfoOf(kFile).st_mtim;
    time.tv_nsec += time.tv_nsec < 500'000'000 ? 1000 : -1000;
    WriteFile(kFile, "b " + kOn);
    SetTime(kFile, time);
}

void ChangeTheSize() {
    const timespec time = InfoOf(kFile).st_mtim;
    WriteFile(kFile, "b " + kOn + " ");
    SetTime(kFile, time);
}

void ChangeTheFile() {
    const std::string other = kFile + ".new";
    WriteFile(other, "b " + kOn);
    SetTime(other, InfoOf(kFile).st_mtim);
    EXPECT_EQ(rename(other.c_str(), kFile.c_str()), 0);
}

TEST_F(RewrittenPreferencesTest, WhatWasWrittenSinceTheReadingIsEdited) {
    static void (*change)() = nullptr;
    for (const auto way : {ChangeTheTime, ChangeTheSize, ChangeTheFile}) {
        readings = 0;
        change = way;
        rewrite = [] {
            if (readings == 1) {
                change();
            }
        };
        EXPECT_EQ(Switched("a " + kOn, NO).substr(0, 2 + kOff.size()), "b " + kOff);
        EXPECT_EQ(readings, 2);
    }
}

TEST_F(RewrittenPreferencesTest, AFileThatNobodyWritesIsReadOnce) {
    rewrite = [] {};
    EXPECT_EQ(Switched(kOn, NO), kOff);
    EXPECT_EQ(readings, 1);
}

TEST_F(RewrittenPreferencesTest, AfterThreeMoreReadingsTheLastIsWritten) {
    rewrite = [] { WriteFile(kFile, std::string(static_cast<size_t>(readings), 'x') + kOn); };
    EXPECT_EQ(Switched(kOn, NO), "xxx" + kOff);
    EXPECT_EQ(readings, 4);
}

TEST_F(RewrittenPreferencesTest, WhatCannotBeReadAgainStaysWithoutAWord) {
    rewrite = [] { WriteFile(kFile, "\xFF" + kOn); };
    EXPECT_EQ(Switched(kOn, NO), "\xFF" + kOn);
    EXPECT_EQ(readings, 2);

    rewrite = [] { unlink(kFile.c_str()); };
    WriteFile(kFile, kOn);
    NSError* error = nil;
    EXPECT_TRUE(SwitchChromePasswordManager(NO, &error));
    EXPECT_EQ(error, nil);
    EXPECT_NE(access(kFile.c_str(), F_OK), 0);
}

TEST_F(RewrittenPreferencesTest, BehindALinkItIsTheTargetThatCounts) {
    const TemporaryFolder elsewhere;
    static std::string target;
    target = elsewhere / "target";
    WriteFile(target, kOn);
    ASSERT_EQ(symlink(target.c_str(), kFile.c_str()), 0);
    rewrite = [] {
        if (readings == 1) {
            WriteFile(target, "b " + kOn);
        }
    };
    EXPECT_TRUE(SwitchChromePasswordManager(NO, NULL));
    EXPECT_EQ(ReadFile(kFile), "b " + kOff);
}

// The highest memory use of this process since the peak was last forgotten, in bytes.
size_t PeakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, 6, "VmHWM:") == 0) {
            return std::stoull(line.substr(6)) * 1024;
        }
    }
    throw std::runtime_error("no VmHWM");
}

// Also says how much is in use.
size_t ForgetPeakMemory() {
    std::ofstream("/proc/self/clear_refs") << "5";
    return PeakMemory();
}

// 10 MB with that many settings. Every character takes two bytes of memory, since one of them
// needs them.
std::string LargeText(size_t settings, const std::string& setting) {
    const size_t distance = 10'000'000 / settings;
    std::string text = "\u2013";
    for (size_t i = 0; i < settings; ++i) {
        text += setting;
        text.append(distance - kOn.size(), '.');
    }
    return text;
}

class LargePreferencesTest : public ChromePreferencesTest,
                             public testing::WithParamInterface<size_t> {};

TEST_P(LargePreferencesTest, AreSwitchedInLinearTimeAndLessThanEightTimesTheirMemory) {
    size_t size = 0;
    {
        const std::string text = LargeText(GetParam(), kOn);
        size = text.size();
        WriteFile(kFile, text);
    }
    const size_t atRest = ForgetPeakMemory();
    const std::clock_t start = std::clock();
    EXPECT_TRUE(SwitchChromePasswordManager(NO, NULL));
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    const double memory = static_cast<double>(PeakMemory() - atRest) / static_cast<double>(size);
    EXPECT_LT(seconds, 6);  // a quadratic way takes minutes for a hundred thousand settings
    EXPECT_LT(memory, 8);
    EXPECT_TRUE(ReadFile(kFile) == LargeText(GetParam(), kOff));
}

INSTANTIATE_TEST_SUITE_P(Settings, LargePreferencesTest, testing::Values(1, 100'000));

}  // namespace
