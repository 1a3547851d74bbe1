// A user who cancels the first administrator prompt, and is refused at every later one.
#include "privileged/ElevatedRights.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/LogFile.h"

namespace {

BOOL RunScript(NSString** output, NSString** errorDescription) {
    return [ElevatedRights runStringAsAdministrator:@"touch /private/tmp/ran"
                                      withArguments:[NSArray arrayWithObject:@""]
                                             output:output
                                   errorDescription:errorDescription];
}

class RefusedRights : public testing::Test {
  protected:
    // Each prompt uses up a verdict, so the first prompt stands before every test.
    static void SetUpTestSuite() {
        @autoreleasepool {
            NSString* output = @"untouched";
            NSString* errorDescription = nil;
            firstRan = RunScript(&output, &errorDescription) != NO;
            firstError = [errorDescription UTF8String];
            firstOutput = [output UTF8String];
            firstLeftItsScript = access("/var/tmp/script.sh", F_OK) == 0;
        }
    }

    static inline bool firstRan = true;
    static inline bool firstLeftItsScript = true;
    static inline std::string firstError;
    static inline std::string firstOutput;
};

TEST_F(RefusedRights, CancellingAndRefusalAreToldApart) {
    EXPECT_FALSE(firstRan);
    EXPECT_EQ(firstError, "The administrator password is required to do this.");
    EXPECT_EQ(firstOutput, "untouched");
    EXPECT_FALSE(firstLeftItsScript);

    NSString* output = @"untouched";
    NSString* errorDescription = nil;
    EXPECT_FALSE(RunScript(&output, &errorDescription));
    EXPECT_STREQ([errorDescription UTF8String],
                 "The administrator user name or password was incorrect.");
    EXPECT_STREQ([output UTF8String], "untouched");
    EXPECT_NE(access("/private/tmp/ran", F_OK), 0);
    EXPECT_NE(access("/var/tmp/script.sh", F_OK), 0);
}

TEST_F(RefusedRights, ARefusedAuthorizationStaysAndIsReturnedTheSecondTime) {
    // There is no display here, so the alert is a line of the log.
    const LogFile log;
    ASSERT_TRUE(
        CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    ElevatedRights* rights = [[ElevatedRights alloc] init];
    EXPECT_EQ([rights GetAuthorization], static_cast<AuthorizationRef>(NULL));
    EXPECT_EQ(WithoutTime(log.Bytes()),
              "\nHH:MM:SS - WARNING : No display for the alert: Invalid credentials");
    EXPECT_NE([rights GetAuthorization], static_cast<AuthorizationRef>(NULL));
    [rights release];
    AuthorizationRef authorization = NULL;
    EXPECT_EQ([ElevatedRights elevate:&authorization], errAuthorizationDenied);
    EXPECT_EQ(AuthorizationFree(authorization, kAuthorizationFlagDestroyRights), 0);
}

TEST_F(RefusedRights, AJobIsNotBlessedWithoutThem) {
    ElevatedRights* rights = [[ElevatedRights alloc] init];
    EXPECT_FALSE([rights executeScriptWithRights:@"/private/tmp/agent.tool.sh"]);
    EXPECT_NE(access("/private/tmp/agent.sh", F_OK), 0);
    [rights release];
}

}  // namespace
