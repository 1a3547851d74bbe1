// Privileged jobs: this program takes the place of the platform's calls around them, and never
// sleeps.
#include <ServiceManagement/ServiceManagement.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include "privileged/ElevatedRights.h"
#include "tests/support/Files.h"
#include "tests/support/LogFile.h"
#include "tests/support/ReplacedMethod.h"

namespace {

const std::string kGiven = "/private/tmp/agent.tool.sh";
const std::string kCopy = "/private/tmp/agent.sh";
const std::string kResource = "/private/tmp/resource";

bool blessed = true;
bool environmentIsFull = false;
std::vector<std::string> events;  // in their order
AuthorizationRef authorizationUsed = NULL;

bool Exists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

}  // namespace

Boolean SMJobBless(CFStringRef domain, CFStringRef label, AuthorizationRef authorization,
                   CFErrorRef* /*error*/) {
    EXPECT_EQ(domain, kSMDomainSystemLaunchd);
    events.push_back("bless " + std::string([(NSString*)label UTF8String]) +
                     " with TMPDIR=" + (getenv("TMPDIR") == nullptr ? "" : getenv("TMPDIR")));
    authorizationUsed = authorization;
    return blessed;
}

extern "C" int usleep(useconds_t microseconds) {
    events.push_back("sleep " + std::to_string(microseconds) +
                     (Exists(kCopy) ? " with the copy" : " without a copy"));
    return 0;
}

extern "C" int setenv(const char* name, const char* value, int overwrite) {
    if (environmentIsFull) {
        return -1;
    }
    using SetEnvironment = int (*)(const char*, const char*, int);
    static const auto real = reinterpret_cast<SetEnvironment>(dlsym(RTLD_NEXT, "setenv"));
    return real(name, value, overwrite);
}

namespace {

NSString* FoundResource(id, SEL, NSString* name, NSString* type) {
    EXPECT_STREQ([name UTF8String], "agent");
    EXPECT_STREQ([type UTF8String], "sh");
    return [NSString stringWithUTF8String:kResource.c_str()];
}

class BlessingTest : public testing::Test {
  protected:
    BlessingTest() {
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
        WriteFile(kGiven, "#!/bin/sh\necho given \xFF\n");
        setenv("TMPDIR", "/elsewhere", 1);
        blessed = true;
        environmentIsFull = false;
        events.clear();
    }
    ~BlessingTest() override {
        [rights release];
        unlink(kGiven.c_str());
        unlink(kCopy.c_str());
    }

    BOOL Bless(const std::string& path = kGiven) {
        return [rights executeScriptWithRights:[NSString stringWithUTF8String:path.c_str()]];
    }

    std::string Log() { return WithoutTime(log.Bytes()); }

    ElevatedRights* const rights = [[ElevatedRights alloc] init];
    LogFile log;
};

using Events = std::vector<std::string>;

TEST_F(BlessingTest, AJobIsBlessedFromItsCopyBetweenTwoSeconds) {
    EXPECT_TRUE(Bless());
    EXPECT_EQ(events, (Events{"sleep 1000000 with the copy",
                              "bless /private/tmp/agent.sh with TMPDIR=/private/tmp/",
                              "sleep 1000000 with the copy"}));
    EXPECT_EQ(authorizationUsed, [rights GetAuthorization]);
    EXPECT_EQ(ReadFile(kCopy), ReadFile(kGiven));
    EXPECT_EQ(ModeOf(kCopy), 0775U);
    EXPECT_EQ(Log(), "\nHH:MM:SS - INFO : PATH ELEVL /private/tmp/agent.sh");
}

TEST_F(BlessingTest, AJobThatIsNotBlessedFreesTheAuthorizationAndKeepsTheReference) {
    blessed = false;
    EXPECT_FALSE(Bless());
    EXPECT_EQ(events, (Events{"sleep 1000000 with the copy",
                              "bless /private/tmp/agent.sh with TMPDIR=/private/tmp/"}));
    EXPECT_EQ(Log(), "\nHH:MM:SS - INFO : PATH ELEVL /private/tmp/agent.sh"
                     "\nHH:MM:SS - INFO : SMJOB FAILS FOR PATH ELEVL /private/tmp/agent.sh");
    EXPECT_DEATH(AuthorizationFree(authorizationUsed, kAuthorizationFlagDestroyRights),
                 "freed before");
    EXPECT_EQ([rights GetAuthorization], authorizationUsed);
}

TEST_F(BlessingTest, AFreedAuthorizationIsHandedToNobodyUntilThereIsANewOne) {
    blessed = false;
    EXPECT_FALSE(Bless());
    const AuthorizationRef freed = authorizationUsed;
    blessed = true;
    events.clear();
    EXPECT_FALSE(Bless());
    EXPECT_EQ(events, Events{"sleep 1000000 with the copy"});
    EXPECT_EQ([rights GetElevatedRights], 0);
    EXPECT_TRUE(Bless());
    EXPECT_NE(authorizationUsed, freed);
}

TEST_F(BlessingTest, AScriptOfTheBundleIsTakenInPlaceOfTheGivenOne) {
    WriteFile(kResource, "resource");
    const ReplacedMethod lookup(ReplacedMethod::InstanceMethod, [NSBundle class],
                                @selector(pathForResource:ofType:),
                                reinterpret_cast<IMP>(FoundResource));
    EXPECT_TRUE(Bless());
    EXPECT_EQ(ReadFile(kCopy), "resource");
    unlink(kResource.c_str());
}

TEST_F(BlessingTest, AMissingScriptIsBlessedAllTheSame) {
    unlink(kGiven.c_str());
    EXPECT_TRUE(Bless());
    EXPECT_EQ(events, (Events{"sleep 1000000 without a copy",
                              "bless /private/tmp/agent.sh with TMPDIR=/private/tmp/",
                              "sleep 1000000 without a copy"}));
}

TEST_F(BlessingTest, ALinkWhereTheCopyBelongsOpensNothing) {
    const std::string mine = "/private/tmp/mine";
    WriteFile(mine, "private");
    ASSERT_EQ(chmod(mine.c_str(), 0600), 0);
    unlink(kGiven.c_str());  // nothing to copy, so that the link stays
    ASSERT_EQ(symlink(mine.c_str(), kCopy.c_str()), 0);
    EXPECT_TRUE(Bless());
    EXPECT_EQ(ModeOf(mine), 0600U);
    unlink(mine.c_str());
}

TEST_F(BlessingTest, ALinkWhereTheCopyBelongsIsReplacedAndItsTargetStays) {
    const std::string mine = "/private/tmp/mine";
    WriteFile(mine, "private");
    ASSERT_EQ(symlink(mine.c_str(), kCopy.c_str()), 0);
    EXPECT_TRUE(Bless());
    EXPECT_EQ(ReadFile(mine), "private");
    EXPECT_EQ(ReadFile(kCopy), ReadFile(kGiven));
    unlink(mine.c_str());
}

TEST_F(BlessingTest, TheCopysNameEndsAtTheFirstPointOfTheLastComponent) {
    for (const auto& [given, copy] :
         {std::pair<std::string, std::string>{"/a.b/tool", "/private/tmp/tool.sh"},
          {"tool.x.y", "/private/tmp/tool.sh"},
          {"/a/.hidden", "/private/tmp/.sh"},
          {"/a/", "/private/tmp/.sh"},
          {"", "/private/tmp/.sh"}}) {
        events.clear();
        EXPECT_TRUE(Bless(given));
        EXPECT_EQ(events.at(1), "bless " + copy + " with TMPDIR=/private/tmp/");
    }
}

TEST_F(BlessingTest, AnEnvironmentThatTakesNoVariableIsReportedAndStopsNothing) {
    environmentIsFull = true;
    EXPECT_TRUE(Bless());
    EXPECT_EQ(events[1], "bless /private/tmp/agent.sh with TMPDIR=/elsewhere");
    EXPECT_EQ(Log(), "\nHH:MM:SS - FAILURE : Fail to set TMPFIR"
                     "\nHH:MM:SS - INFO : PATH ELEVL /private/tmp/agent.sh");
}

}  // namespace
