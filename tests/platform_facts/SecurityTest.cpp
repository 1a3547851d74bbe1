// What Security tells without asking anybody.
#include <Security/Security.h>
#include <gtest/gtest.h>

namespace {

TEST(Session, TheCallersOwnOneTellsItsAttributes) {
    constexpr SessionAttributeBits kUntouched = 0xFFFFFFFF;
    SessionAttributeBits attributes = kUntouched;
    EXPECT_EQ(SessionGetInfo(callerSecuritySession, nullptr, &attributes), errSessionSuccess);
    EXPECT_NE(attributes, kUntouched);
}

TEST(Session, NobodysSessionIsUnknown) {
    SessionAttributeBits attributes = 7;
    EXPECT_EQ(SessionGetInfo(0x7FFFFFF0, nullptr, &attributes), errSessionInvalidId);
    EXPECT_EQ(attributes, 7U);
}

TEST(Authorization, IsMadeAndFreedWithoutAPrompt) {
    AuthorizationRef first = nullptr;
    AuthorizationRef second = nullptr;
    ASSERT_EQ(AuthorizationCreate(nullptr, nullptr, kAuthorizationFlagDefaults, &first),
              errAuthorizationSuccess);
    ASSERT_EQ(AuthorizationCreate(nullptr, nullptr, kAuthorizationFlagDefaults, &second),
              errAuthorizationSuccess);
    EXPECT_NE(first, static_cast<AuthorizationRef>(nullptr));
    EXPECT_NE(first, second);
    EXPECT_EQ(AuthorizationFree(first, kAuthorizationFlagDestroyRights), errAuthorizationSuccess);
    EXPECT_EQ(AuthorizationFree(second, kAuthorizationFlagDestroyRights), errAuthorizationSuccess);
}

}  // namespace
