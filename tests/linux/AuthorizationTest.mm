// Authorization Services and Service Management. This program takes the place of the one who is
// asked for a right.
#include <ServiceManagement/ServiceManagement.h>
#include <gtest/gtest.h>

#include <vector>

#include "Security/Administrator.h"
#include "tests/support/ErrorChecks.h"

namespace {

Verdict answer = Verdict::Allowed;
std::vector<std::string> asked;

}  // namespace

Verdict AskForRight(const std::string& right) {
    asked.push_back(right);
    return right == "refused" ? Verdict::Refused : answer;
}

namespace {

class Authorization : public testing::Test {
  protected:
    Authorization() {
        answer = Verdict::Allowed;
        asked.clear();
        EXPECT_EQ(AuthorizationCreate(NULL, NULL, kAuthorizationFlagDefaults, &reference_),
                  errAuthorizationSuccess);
    }
    ~Authorization() override { AuthorizationFree(reference_, kAuthorizationFlagDestroyRights); }

    OSStatus Request(std::vector<AuthorizationItem> items) {
        AuthorizationRights rights = {static_cast<UInt32>(items.size()), items.data()};
        return AuthorizationCopyRights(reference_, &rights, NULL,
                                       kAuthorizationFlagInteractionAllowed, NULL);
    }

    AuthorizationRef reference_ = NULL;
};

constexpr AuthorizationItem Right(const char* name) {
    return {name, 0, NULL, 0};
}

TEST_F(Authorization, ReferencesAreNotNullAndDiffer) {
    AuthorizationRef second = NULL;
    ASSERT_EQ(AuthorizationCreate(NULL, NULL, kAuthorizationFlagDefaults, &second), 0);
    EXPECT_NE(reference_, static_cast<AuthorizationRef>(NULL));
    EXPECT_NE(second, reference_);
    EXPECT_EQ(AuthorizationFree(second, kAuthorizationFlagDestroyRights), 0);
}

TEST_F(Authorization, TheAnswerIsTheStatus) {
    EXPECT_EQ(Request({Right("one")}), errAuthorizationSuccess);
    answer = Verdict::Cancelled;
    EXPECT_EQ(Request({Right("one")}), errAuthorizationCanceled);
    answer = Verdict::Refused;
    EXPECT_EQ(Request({Right("one")}), errAuthorizationDenied);
}

TEST_F(Authorization, RightsAreAskedInTurnUntilOneIsRefused) {
    EXPECT_EQ(Request({Right("one"), Right("refused"), Right("three")}), errAuthorizationDenied);
    EXPECT_EQ(asked, (std::vector<std::string>{"one", "refused"}));
}

TEST_F(Authorization, AFreedReferenceEndsTheProgramThatUsesIt) {
    AuthorizationRef freed = NULL;
    ASSERT_EQ(AuthorizationCreate(NULL, NULL, kAuthorizationFlagDefaults, &freed), 0);
    ASSERT_EQ(AuthorizationFree(freed, kAuthorizationFlagDestroyRights), 0);
    AuthorizationRights none = {0, NULL};
    EXPECT_DEATH(AuthorizationFree(freed, kAuthorizationFlagDestroyRights),
                 "AuthorizationFree: .*freed before");
    EXPECT_DEATH(AuthorizationCopyRights(freed, &none, NULL, 0, NULL),
                 "AuthorizationCopyRights: .*freed before");
    EXPECT_DEATH(SMJobBless(kSMDomainSystemLaunchd, (CFStringRef) @"a", freed, NULL),
                 "freed before");
    EXPECT_DEATH(AuthorizationFree(NULL, 0), "never made");
}

TEST_F(Authorization, NoJobIsBlessed) {
    @autoreleasepool {
        CFErrorRef error = NULL;
        EXPECT_FALSE(SMJobBless(kSMDomainSystemLaunchd, (CFStringRef) @"/private/tmp/a.sh",
                                reference_, &error));
        ASSERT_NE(error, static_cast<CFErrorRef>(NULL));
        EXPECT_EQ(Text([(NSError*)error domain]), "CFErrorDomainLaunchd");
        [(NSError*)error release];
        EXPECT_FALSE(SMJobBless(kSMDomainSystemLaunchd, (CFStringRef) @"a", reference_, NULL));
    }
}

}  // namespace
