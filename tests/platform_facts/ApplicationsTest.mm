// Applications that are installed and running: Launch Services and the workspace. Nothing that
// belongs to the user is started.
#include <AppKit/AppKit.h>
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"

namespace {

class Applications : public testing::Test {
  protected:
    ~Applications() override { [pool_ release]; }

    /// The application's address, or the status.
    static std::string Find(NSString* identifier) {
        CFURLRef url = nullptr;
        const OSStatus status =
            LSFindApplicationForInfo(0, (CFStringRef)identifier, nullptr, nullptr, &url);
        EXPECT_EQ(url == nullptr, status != 0);
        return status == 0 ? Text([[(NSURL*)url autorelease] absoluteString])
                           : std::to_string(status);
    }

    NSAutoreleasePool* const pool_ = [[NSAutoreleasePool alloc] init];
};

// Since macOS 13 Safari lies elsewhere; it has been seen in both forms.
TEST_F(Applications, SafariIsFoundWithASlashBehindItsAddress) {
    for (NSString* identifier in @[ @"com.apple.Safari", @"COM.apple.safari" ]) {
        const std::string address = Find(identifier);
        const std::string name = "/Applications/Safari.app/";
        EXPECT_EQ(address.rfind("file:///", 0), 0U) << address;
        ASSERT_GT(address.size(), name.size()) << address;
        EXPECT_EQ(address.substr(address.size() - name.size()), name);
    }
}

TEST_F(Applications, AnUnknownOneIsNotFound) {
    EXPECT_EQ(Find(@"com.example.missing"), "-10814");
}

TEST_F(Applications, TheDefaultOptionOfLaunchesIsThis) {
    EXPECT_EQ(static_cast<NSUInteger>(NSWorkspaceLaunchDefault), 0x10000U);
}

}  // namespace
