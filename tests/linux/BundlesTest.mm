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

TEST_F(Bundles, InApplesLayoutAreUnderstood) {
    MakeBundle(folder_, "Google Chrome.app",
               Entry("CFBundleIdentifier", "com.google.Chrome") +
                   Entry("CFBundleExecutable", "Chrome Ü") + Entry("KSVersion", "7"));
    folder_.Write("Google Chrome.app/Contents/MacOS/Chrome Ü", "", 0755);
    NSBundle* bundle = At("Google Chrome.app");
    EXPECT_EQ(Text([bundle bundlePath]), folder_ / "Google Chrome.app");
    EXPECT_EQ(Text([bundle bundleIdentifier]), "com.google.Chrome");
    EXPECT_EQ(Text((NSString*)[[bundle infoDictionary] objectForKey:@"KSVersion"]), "7");
    EXPECT_EQ(Text((NSString*)[bundle objectForInfoDictionaryKey:@"KSVersion"]), "7");
    EXPECT_EQ(Text([bundle executablePath]), folder_ / "Google Chrome.app/Contents/MacOS/Chrome Ü");
    EXPECT_EQ(Text([bundle resourcePath]), folder_ / "Google Chrome.app/Contents/Resources");
}

TEST_F(Bundles, WithoutANamedExecutableHaveTheOneOfTheirOwnNameOrNone) {
    MakeBundle(folder_, "One.app", "");
    MakeBundle(folder_, "Two.app", "<key>CFBundleExecutable</key><array/>");
    folder_.Write("Two.app/Contents/MacOS/Two", "", 0755);
    EXPECT_EQ([At("One.app") executablePath], nil);
    EXPECT_EQ(Text([At("Two.app") executablePath]), folder_ / "Two.app/Contents/MacOS/Two");
    EXPECT_EQ([At("One.app") bundleIdentifier], nil);
}

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
