// What a program finds when it starts: its locale, its home, itself.
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <filesystem>

#include "tests/support/ErrorChecks.h"
#include "tests/support/TemporaryFolder.h"

namespace {

class Process : public testing::Test {
  protected:
    ~Process() override { [pool_ release]; }

    static std::string Search(NSSearchPathDirectory directory, BOOL expandTilde) {
        return Text([NSSearchPathForDirectoriesInDomains(directory, NSUserDomainMask, expandTilde)
            componentsJoinedByString:@"|"]);
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
};

/// HOME, until the end of the test.
class HomeVariable {
  public:
    explicit HomeVariable(const char* value) : before_(std::getenv("HOME")) {
        setenv("HOME", value, 1);
    }
    ~HomeVariable() { setenv("HOME", before_.c_str(), 1); }
    HomeVariable(const HomeVariable&) = delete;
    HomeVariable& operator=(const HomeVariable&) = delete;

  private:
    const std::string before_;
};

TEST_F(Process, TheLocaleIsCAndTakesEveryByteForACharacter) {
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    wchar_t wide[3] = {};
    EXPECT_EQ(std::mbstowcs(wide, "\xC3\xFF", 3), 2U);
    EXPECT_EQ(wide[0], 0xC3);
    EXPECT_EQ(wide[1], 0xFF);
    char narrow[3] = {};
    EXPECT_EQ(std::wcstombs(narrow, L"\xE9\xFF", 3), 2U);
    EXPECT_STREQ(narrow, "\xE9\xFF");
    EXPECT_EQ(std::wcstombs(narrow, L"\x100", 3), static_cast<size_t>(-1));
    EXPECT_EQ(Text([NSString stringWithFormat:@"%.1f", 1.5]), "1.5");
}

TEST_F(Process, TheHomeIsTheOneOfTheUsersRecordWhateverHomeSays) {
    const std::string home = getpwuid(geteuid())->pw_dir;
    const HomeVariable elsewhere("/elsewhere");
    EXPECT_EQ(Text(NSHomeDirectory()), home);
    EXPECT_EQ(Text([@"~" stringByExpandingTildeInPath]), home);
    EXPECT_EQ(Text([@"~/a b/c" stringByExpandingTildeInPath]), home + "/a b/c");
    EXPECT_EQ(Text([@"/a/~/b" stringByExpandingTildeInPath]), "/a/~/b");
    EXPECT_EQ(Search(NSLibraryDirectory, YES), home + "/Library");
    EXPECT_EQ(Search(NSApplicationSupportDirectory, YES), home + "/Library/Application Support");
    EXPECT_EQ(Search(NSApplicationSupportDirectory, NO), "~/Library/Application Support");
}

TEST_F(Process, TheMainBundleOfAPlainExecutableIsItsFolderWithoutInformation) {
    NSBundle* const bundle = [NSBundle mainBundle];
    NSString* const started = [[[NSProcessInfo processInfo] arguments] objectAtIndex:0];
    const std::string executable = std::filesystem::canonical(Text(started)).string();
    const std::string name = executable.substr(executable.rfind('/') + 1);
    EXPECT_EQ(name, "program_facts");
    EXPECT_EQ(Text([[NSProcessInfo processInfo] processName]), name);
    const std::string folder = executable.substr(0, executable.rfind('/'));
    EXPECT_EQ(Text([bundle bundlePath]), folder);
    EXPECT_EQ(Text([bundle resourcePath]), folder);
    EXPECT_EQ([bundle bundleIdentifier], nil);
    EXPECT_EQ([bundle objectForInfoDictionaryKey:@"CFBundleVersion"], nil);
}

TEST_F(Process, TheEnvironmentOfTheStartIsTold) {
    NSDictionary* const environment = [[NSProcessInfo processInfo] environment];
    EXPECT_EQ(Text((NSString*)[environment objectForKey:@"PATH"]), std::getenv("PATH"));
}

}  // namespace
