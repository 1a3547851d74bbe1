#include <Security/Security.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/PrivateDisplay.h"

namespace {

SessionAttributeBits Attributes() {
    SessionAttributeBits attributes = 0xFFFFFFFF;
    EXPECT_EQ(SessionGetInfo(callerSecuritySession, nullptr, &attributes), errSessionSuccess);
    return attributes;
}

TEST(Session, HasGraphicAccessWhereADisplayCanBeOpened) {
    const PrivateDisplay display;
    EXPECT_EQ(Attributes(), static_cast<SessionAttributeBits>(sessionHasGraphicAccess));
}

TEST(Session, HasNoneWithoutADisplayOrWithOneThatIsGone) {
    testing::internal::CaptureStderr();
    unsetenv("DISPLAY");
    EXPECT_EQ(Attributes(), 0U);
    setenv("DISPLAY", ":4711", 1);
    EXPECT_EQ(Attributes(), 0U);
    unsetenv("DISPLAY");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Session, NoOtherOneIsKnown) {
    SessionAttributeBits attributes = 7;
    EXPECT_EQ(SessionGetInfo(1, nullptr, &attributes), errSessionInvalidId);
    EXPECT_EQ(attributes, 7U);
}

}  // namespace
