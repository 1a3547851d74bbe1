// Bundles of applications, as the product and browsers have them.
#include <gtest/gtest.h>

#include "tests/support/BundleFixture.h"

namespace {

class Bundles : public BundleFixture {};

TEST_F(Bundles, InApplesLayoutAreUnderstood) {
    MakeBundle(folder_, "Google Chrome.app",
               Entry("CFBundleIdentifier", "com.google.Chrome") + Entry("KSVersion", "7"));
    NSBundle* bundle = At("Google Chrome.app");
    EXPECT_EQ(Text([bundle bundlePath]), folder_ / "Google Chrome.app");
    EXPECT_EQ(Text([bundle bundleIdentifier]), "com.google.Chrome");
    EXPECT_EQ(Text((NSString*)[[bundle infoDictionary] objectForKey:@"KSVersion"]), "7");
    EXPECT_EQ(Text((NSString*)[bundle objectForInfoDictionaryKey:@"KSVersion"]), "7");
    EXPECT_EQ(Text([bundle resourcePath]), folder_ / "Google Chrome.app/Contents/Resources");
}

TEST_F(Bundles, WithoutInformationHaveNone) {
    MakeBundle(folder_, "Plain.app", "");
    EXPECT_EQ([At("Plain.app") bundleIdentifier], nil);
    EXPECT_EQ([At("Plain.app") objectForInfoDictionaryKey:@"KSVersion"], nil);
}

}  // namespace
