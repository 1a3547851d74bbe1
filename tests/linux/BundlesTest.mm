#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/support/BundleFixture.h"

namespace {

class Bundles : public BundleFixture {};

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
    EXPECT_EQ(Text([main resourcePath]), executable.parent_path());
    EXPECT_EQ([[main infoDictionary] objectForKey:@"KSVersion"], nil);
    EXPECT_EQ([main bundleIdentifier], nil);
}

TEST_F(Bundles, ResourcesOfAPlainExecutableLieBesideItOnly) {
    const std::string name = "bundles-test-" + std::to_string(getpid());
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const auto inside = folder / "Resources" / (name + ".sh");
    const bool isNew = std::filesystem::create_directory(folder / "Resources");
    std::ofstream(inside) << "x";
    NSString* const hidden = [[NSBundle mainBundle] pathForResource:Text(name) ofType:@"sh"];
    std::filesystem::rename(inside, folder / (name + ".sh"));
    NSString* const found = [[NSBundle mainBundle] pathForResource:Text(name) ofType:@"sh"];
    std::filesystem::remove(folder / (name + ".sh"));
    if (isNew) {
        std::filesystem::remove(folder / "Resources");
    }
    EXPECT_EQ(hidden, nil);
    EXPECT_EQ(Text(found), folder / (name + ".sh"));
}

}  // namespace
