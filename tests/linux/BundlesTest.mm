#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/AppleBundle.h"
#include "tests/support/ErrorChecks.h"

namespace {

class Bundles : public testing::Test {
  protected:
    ~Bundles() override { [pool_ release]; }

    NSBundle* At(const std::string& name) { return [NSBundle bundleWithPath:Text(folder_ / name)]; }

    NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
    TemporaryFolder folder_;
};

TEST_F(Bundles, WithABrokenInfoAreEmpty) {
    MakeBundle(folder_, "Broken.app", "");
    folder_.Write("Broken.app/Contents/Info.plist", "<plist");
    testing::internal::CaptureStderr();
    EXPECT_EQ([[At("Broken.app") infoDictionary] count], 0U);
    EXPECT_EQ([At("Broken.app") bundleIdentifier], nil);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(At("missing"), nil);
    EXPECT_EQ([NSBundle bundleWithPath:nil], nil);
}

TEST_F(Bundles, OfGNUstepStayAsTheyAre) {
    NSBundle* foundation = [NSBundle bundleForClass:[NSObject class]];
    NSString* languages = [foundation pathForResource:@"English"
                                               ofType:nil
                                          inDirectory:@"Languages"];
    EXPECT_TRUE([[NSFileManager defaultManager] fileExistsAtPath:languages]) << Text(languages);
}

TEST_F(Bundles, TheMainBundleOfAPlainExecutableIsItsFolder) {
    NSBundle* main = [NSBundle mainBundle];
    const auto executable = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(Text([main bundlePath]), executable.parent_path());
    EXPECT_EQ(Text([main executablePath]), executable);
    EXPECT_EQ(Text([main resourcePath]), executable.parent_path());
    EXPECT_EQ([[main infoDictionary] objectForKey:@"KSVersion"], nil);
    EXPECT_EQ([main bundleIdentifier], nil);
}

}  // namespace
