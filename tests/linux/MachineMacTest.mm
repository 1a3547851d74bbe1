// Runs in a Mac root, whose machine tells its version.
#include <gtest/gtest.h>

#include "tests/linux/ErrorChecks.h"

namespace {

std::string Key(const std::string& name) {
    NSDictionary* system = [NSDictionary
        dictionaryWithContentsOfFile:@"/System/Library/CoreServices/SystemVersion.plist"];
    return Text((NSString*)[system objectForKey:Text(name)]);
}

TEST(Machine, TellsItsVersionAsAMacDoes) {
    @autoreleasepool {
        const std::string version =
            Text([[NSProcessInfo processInfo] operatingSystemVersionString]);
        EXPECT_EQ(version, "Version " + Key("ProductVersion") + " (Build " +
                               Key("ProductBuildVersion") + ")");
    }
}

}  // namespace
