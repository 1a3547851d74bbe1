// What is requested of Authorization Services: this program takes their place.
#include <gtest/gtest.h>

#include <vector>

#include "privileged/ElevatedRights.h"

namespace {

const AuthorizationRef kReference = reinterpret_cast<AuthorizationRef>(0x5eed);

OSStatus creation = errAuthorizationSuccess;
OSStatus request = errAuthorizationSuccess;
std::vector<std::string> calls;

}  // namespace

OSStatus AuthorizationCreate(const AuthorizationRights* rights,
                             const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                             AuthorizationRef* authorization) {
    EXPECT_EQ(rights, static_cast<void*>(NULL));
    EXPECT_EQ(environment, static_cast<void*>(NULL));
    calls.push_back("create " + std::to_string(flags));
    if (creation == errAuthorizationSuccess) {
        *authorization = kReference;
    }
    return creation;
}

OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* environment,
                                 AuthorizationFlags flags, AuthorizationRights** authorized) {
    EXPECT_EQ(authorization, kReference);
    EXPECT_EQ(environment, static_cast<void*>(NULL));
    EXPECT_EQ(authorized, static_cast<void*>(NULL));
    EXPECT_EQ(rights->count, 1U);
    const AuthorizationItem& item = rights->items[0];
    EXPECT_EQ(item.valueLength, 0U);
    EXPECT_EQ(item.value, static_cast<void*>(NULL));
    EXPECT_EQ(item.flags, 0U);
    calls.push_back(item.name + (" " + std::to_string(flags)));
    return request;
}

OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags flags) {
    EXPECT_EQ(authorization, kReference);
    calls.push_back("free " + std::to_string(flags));
    return errAuthorizationSuccess;
}

namespace {

using Calls = std::vector<std::string>;

class RightsRequestTest : public testing::Test {
  protected:
    RightsRequestTest() {
        creation = errAuthorizationSuccess;
        request = errAuthorizationSuccess;
        calls.clear();
    }
    ~RightsRequestTest() override { [rights release]; }

    ElevatedRights* rights = [[ElevatedRights alloc] init];
};

TEST_F(RightsRequestTest, TheObjectsAuthorizationIsRequestedOnceAndFreedAtTheEnd) {
    EXPECT_EQ([rights GetAuthorization], kReference);
    EXPECT_EQ([rights GetAuthorization], kReference);
    [rights release];
    rights = nil;
    EXPECT_EQ(calls, (Calls{"create 0", "system.privilege.admin 19", "free 8"}));
}

TEST_F(RightsRequestTest, AnEarlierAuthorizationIsFreed) {
    EXPECT_EQ([rights GetElevatedRights], 0);
    EXPECT_EQ([rights GetElevatedRights], 0);
    EXPECT_EQ(calls, (Calls{"create 0", "system.privilege.admin 19", "free 8", "create 0",
                            "system.privilege.admin 19"}));
}

TEST_F(RightsRequestTest, AnObjectWithoutAnAuthorizationFreesNone) {
    [rights release];
    rights = nil;
    EXPECT_EQ(calls, Calls());
}

TEST_F(RightsRequestTest, TheStatusOfARefusedRequestIsReturnedAndTheReferenceKept) {
    request = errAuthorizationDenied;
    EXPECT_EQ([rights GetElevatedRights], errAuthorizationDenied);
    EXPECT_EQ([rights GetAuthorization], kReference);
    EXPECT_EQ(calls, (Calls{"create 0", "system.privilege.admin 19"}));
}

TEST_F(RightsRequestTest, NothingIsRequestedWithoutAnAuthorization) {
    creation = errAuthorizationDenied;
    EXPECT_EQ([rights GetElevatedRights], errAuthorizationDenied);
    EXPECT_EQ([rights GetAuthorization], static_cast<AuthorizationRef>(NULL));
    AuthorizationRef authorization = NULL;
    EXPECT_EQ([ElevatedRights elevate:&authorization], errAuthorizationDenied);
    [rights release];
    rights = nil;
    EXPECT_EQ(calls, (Calls{"create 0", "create 0", "create 0"}));
}

TEST_F(RightsRequestTest, AFreedAuthorizationIsForgottenWhereThereIsNoNewOne) {
    EXPECT_EQ([rights GetElevatedRights], 0);
    creation = errAuthorizationDenied;
    EXPECT_EQ([rights GetElevatedRights], errAuthorizationDenied);
    EXPECT_EQ([rights GetAuthorization], static_cast<AuthorizationRef>(NULL));
    [rights release];
    rights = nil;
    EXPECT_EQ(calls,
              (Calls{"create 0", "system.privilege.admin 19", "free 8", "create 0", "create 0"}));
}

TEST_F(RightsRequestTest, AnElevationRequestsItsOwnRightAndLeavesTheReferenceToTheCaller) {
    AuthorizationRef authorization = NULL;
    EXPECT_EQ([ElevatedRights elevate:&authorization], errAuthorizationSuccess);
    EXPECT_EQ(authorization, kReference);
    request = errAuthorizationCanceled;
    EXPECT_EQ([ElevatedRights elevate:&authorization], errAuthorizationCanceled);
    const std::string asked = "com.mycompany.myapplication.command2PA 3";
    EXPECT_EQ(calls, (Calls{"create 0", asked, "create 0", asked}));
}

}  // namespace
