// A user who is refused the rights, in front of a display.
#include <gtest/gtest.h>

#include "privileged/ElevatedRights.h"
#include "tests/support/Asking.h"

namespace {

class RefusedAlertTest : public testing::Test {
  protected:
    ~RefusedAlertTest() override { [rights release]; }

    ElevatedRights* const rights = [[ElevatedRights alloc] init];
};

TEST_F(RefusedAlertTest, ARefusedAuthorizationIsToldUntilTheAlertIsClosed) {
    DesktopUser user;
    EXPECT_TRUE(AskUser(
        user, [&] { return [rights GetAuthorization] == NULL; },
        [&] { user.Click(241, 38); }));  // "Ok", alone in the middle
    EXPECT_NE([rights GetAuthorization], static_cast<AuthorizationRef>(NULL));  // asks no more
}

TEST_F(RefusedAlertTest, TheAlertSaysSoInRed) {
    std::string message;
    NSColor* color = nil;
    EXPECT_FALSE(AskAndLook([&] { return [rights executeScriptWithRights:@"/private/tmp/a.sh"]; },
                            [&](QWStyleAlert* alert) {
                                message = Text([MessageView(alert) string]);
                                color = [[[alert titleTField] textColor] retain];
                            }));
    EXPECT_EQ(message, "Invalid credentials");
    EXPECT_NEAR([color redComponent], 0.93, 0.001);
    EXPECT_NEAR([color greenComponent], 0.11, 0.001);
    EXPECT_NEAR([color blueComponent], 0.14, 0.001);
    [color release];
}

}  // namespace
