// Runs on a Mac root with the four browsers in /Applications.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include "tests/support/ErrorChecks.h"

namespace {

std::string Find(NSString* identifier) {
    CFURLRef url = nullptr;
    const OSStatus status =
        LSFindApplicationForInfo(0, (CFStringRef)identifier, nullptr, nullptr, &url);
    return status == 0 ? Text([[(NSURL*)url autorelease] absoluteString]) : std::to_string(status);
}

TEST(LaunchServicesOnAMac, EveryBrowserIsFound) {
    @autoreleasepool {
        EXPECT_EQ(Find(@"com.google.Chrome"), "file:///Applications/Google%20Chrome.app/");
        EXPECT_EQ(Find(@"com.microsoft.edgemac"), "file:///Applications/Microsoft%20Edge.app/");
        EXPECT_EQ(Find(@"org.mozilla.firefox"), "file:///Applications/Firefox.app/");
        EXPECT_EQ(Find(@"com.apple.Safari"), "file:///Applications/Safari.app/");
        EXPECT_EQ(Find(@"com.example.missing"), "-10814");
    }
}

}  // namespace
