#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "tests/support/ErrorChecks.h"

namespace {

/// The home of the user's record; none: no record.
std::optional<std::string> recordedHome;
/// The caller, another one for each record: a record is read once a user.
uid_t caller = 5000;
int readings = 0;

void SetRecordedHome(const std::optional<std::string>& home) {
    recordedHome = home;
    ++caller;
}

}  // namespace

// These take the place of the C library's, so that the record says what a test needs.
extern "C" uid_t geteuid() noexcept {
    return caller;
}

extern "C" int getpwuid_r(uid_t user, passwd* record, char* buffer, size_t size, passwd** result) {
    ++readings;
    *result = nullptr;
    if (!recordedHome) {
        return 0;
    }
    if (recordedHome->size() >= size) {
        return ERANGE;
    }
    std::memcpy(buffer, recordedHome->c_str(), recordedHome->size() + 1);
    *record = passwd{};
    record->pw_uid = user;
    static char name[] = "alex";
    record->pw_name = name;
    record->pw_dir = buffer;
    *result = record;
    return 0;
}

namespace {

class HomeDirectory : public testing::Test {
  protected:
    static std::string Home() { return Text(NSHomeDirectory()); }
    static std::string Expanded(NSString* path) {
        return Text([path stringByExpandingTildeInPath]);
    }
    static std::string Search(NSSearchPathDirectory directory, NSSearchPathDomainMask domains,
                              BOOL expandTilde = YES) {
        return Text([NSSearchPathForDirectoriesInDomains(directory, domains, expandTilde)
            componentsJoinedByString:@"|"]);
    }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    std::string environment_ = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");

    void SetUp() override {
        SetRecordedHome("/Users/alex");
        setenv("HOME", "/elsewhere", 1);
    }
    ~HomeDirectory() override {
        setenv("HOME", environment_.c_str(), 1);
        [pool_ release];
    }
};

TEST_F(HomeDirectory, IsTheOneOfTheRecordWhateverHomeSays) {
    EXPECT_EQ(Home(), "/Users/alex");
    EXPECT_EQ(Expanded(@"~"), "/Users/alex");
    EXPECT_EQ(Expanded(@"~/"), "/Users/alex");
    EXPECT_EQ(Expanded(@"~/Library/Application Support/Microsoft Edge"),
              "/Users/alex/Library/Application Support/Microsoft Edge");
    EXPECT_EQ(Expanded(@"/a/~/b"), "/a/~/b");
    EXPECT_EQ(Expanded(@""), "");
}

TEST_F(HomeDirectory, IsReadOnceAUser) {
    readings = 0;
    EXPECT_EQ(Home(), Home());
    SetRecordedHome("/Users/beth");
    EXPECT_EQ(Home(), "/Users/beth");
    EXPECT_EQ(Home(), "/Users/beth");
    EXPECT_EQ(readings, 2);
}

TEST_F(HomeDirectory, MayHaveAnyName) {
    for (const std::string home : {"/Users/alex smith", "/Users/50%@ %s", "/Users/o'\"neil",
                                   "/Users/Jörg 😀", "/", "/missing/on this machine"}) {
        SetRecordedHome(home);
        EXPECT_EQ(Home(), home);
        EXPECT_EQ(Expanded(@"~/x"), (home == "/" ? "" : home) + "/x");
    }
    SetRecordedHome("/Users/" + std::string(5000, 'l'));
    EXPECT_EQ(Home(), *recordedHome);
}

TEST_F(HomeDirectory, LosesTheSeparatorsAtItsEnd) {
    SetRecordedHome("/Users/alex//");
    EXPECT_EQ(Home(), "/Users/alex");
}

TEST_F(HomeDirectory, IsHomesValueForAUserWithoutARecord) {
    for (const std::optional<std::string>& none :
         {std::optional<std::string>(), std::optional<std::string>(""),
          std::optional<std::string>("\xFF")}) {
        SetRecordedHome(none);
        EXPECT_EQ(Home(), "/elsewhere");
    }
    setenv("HOME", "relative", 1);
    EXPECT_EQ(Home(), "/var/empty");
    unsetenv("HOME");
    EXPECT_EQ(Home(), "/var/empty");
}

TEST_F(HomeDirectory, HoldsTheUsersFoldersInApplesLayout) {
    EXPECT_EQ(Search(NSApplicationSupportDirectory, NSUserDomainMask),
              "/Users/alex/Library/Application Support");
    EXPECT_EQ(Search(NSApplicationSupportDirectory, NSUserDomainMask, NO),
              "~/Library/Application Support");
    EXPECT_EQ(Search(NSApplicationSupportDirectory, NSUserDomainMask | NSLocalDomainMask),
              "/Users/alex/Library/Application Support|/Library/Application Support");
    EXPECT_EQ(Search(NSLibraryDirectory, NSUserDomainMask), "/Users/alex/Library");
}

TEST_F(HomeDirectory, LeavesGNUstepItsOwnFolders) {
    const std::string libraries = Search(NSLibraryDirectory, NSAllDomainsMask);
    EXPECT_EQ(libraries.rfind("/Users/alex/Library|/Library|", 0), 0U) << libraries;
    EXPECT_NE(libraries.find("/GNUstep"), std::string::npos) << libraries;
}

}  // namespace
