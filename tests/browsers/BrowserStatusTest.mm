// What the installers make of Launch Services' answers: this program answers in its place.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include "browsers/ChromeInstall.h"
#include "browsers/EdgeInstall.h"
#include "browsers/FFoxInstall.h"
#include "tests/support/LogFile.h"

namespace {

OSStatus answer = noErr;
NSString* asked = nil;

}  // namespace

OSStatus LSFindApplicationForInfo(OSType /*creator*/, CFStringRef bundleIdentifier,
                                  CFStringRef /*name*/, FSRef* /*reference*/, CFURLRef* url) {
    asked = [(NSString*)bundleIdentifier copy];
    if (answer == noErr) {
        *url = (CFURLRef)[[NSURL alloc] initWithString:@"file:///Applications/Some%20App.app/"];
    }
    return answer;
}

namespace {

class BrowserStatusTest : public testing::Test {
  protected:
    BrowserStatusTest() {
        EXPECT_TRUE(
            CLogger::m_Logger.InitLogger(log.Path(), "", false, nullptr, 0, CLogger::LevelInfo));
    }

    std::string Log() { return WithoutTime(log.Bytes()); }

    LogFile log;
};

TEST_F(BrowserStatusTest, ChromeThatIsFound) {
    answer = noErr;
    EXPECT_TRUE([ChromeInstall IsBrowserInstalled]);
    EXPECT_TRUE([asked isEqualToString:@"com.google.Chrome"]);
    EXPECT_EQ(Log(), "\nHH:MM:SS - INFO : The app's URL is: file:///Applications/Some%20App.app/");
}

TEST_F(BrowserStatusTest, ChromeThatIsNotFound) {
    answer = -10814;
    EXPECT_FALSE([ChromeInstall IsBrowserInstalled]);
    EXPECT_EQ(Log(), "\nHH:MM:SS - WARNING : App not found");
    EXPECT_FALSE([ChromeInstall IsExtensionInstalled]);
    EXPECT_TRUE([ChromeInstall InstallExtension]);  // nothing to do counts as success
}

TEST_F(BrowserStatusTest, ChromeWithAnotherStatusShowsItUnsigned) {
    answer = -10813;
    EXPECT_FALSE([ChromeInstall IsBrowserInstalled]);
    EXPECT_EQ(Log(), "\nHH:MM:SS - FAILURE : An error occurred: 4294956483");
}

TEST_F(BrowserStatusTest, EdgeThatIsFound) {
    answer = noErr;
    EXPECT_TRUE([EdgeInstall IsBrowserInstalled]);
    EXPECT_TRUE([asked isEqualToString:@"com.microsoft.edgemac"]);
    EXPECT_EQ(Log(),
              "\nHH:MM:SS - INFO : Application URL is: file:///Applications/Some%20App.app/");
}

TEST_F(BrowserStatusTest, EdgeThatIsNotFound) {
    answer = -10814;
    EXPECT_FALSE([EdgeInstall IsBrowserInstalled]);
    EXPECT_EQ(Log(), "\nHH:MM:SS - INFO : Edge application not found!");
    EXPECT_FALSE([EdgeInstall IsExtensionInstalled]);
    EXPECT_TRUE([EdgeInstall InstallExtension]);  // nothing to do counts as success
}

TEST_F(BrowserStatusTest, EdgeWithAnotherStatusShowsItUnsigned) {
    answer = -10813;
    EXPECT_FALSE([EdgeInstall IsBrowserInstalled]);
    EXPECT_EQ(Log(), "\nHH:MM:SS - WARNING : An error occurred: 4294956483");
}

TEST_F(BrowserStatusTest, FirefoxThatIsFound) {
    answer = noErr;
    EXPECT_TRUE([FFoxInstall IsBrowserInstalled]);
    EXPECT_TRUE([asked isEqualToString:@"org.mozilla.firefox"]);
    EXPECT_EQ(Log(),
              "\nHH:MM:SS - INFO : Application URL is: file:///Applications/Some%20App.app/");
}

TEST_F(BrowserStatusTest, FirefoxThatIsNotFound) {
    answer = -10814;
    EXPECT_FALSE([FFoxInstall IsBrowserInstalled]);
    EXPECT_EQ(Log(), "\nHH:MM:SS - INFO : Firefox application not found!");
    EXPECT_FALSE([FFoxInstall IsExtensionInstalled]);
    EXPECT_TRUE([FFoxInstall InstallExtension]);  // nothing to do counts as success
}

TEST_F(BrowserStatusTest, FirefoxWithAnotherStatusShowsItUnsigned) {
    answer = -10813;
    EXPECT_FALSE([FFoxInstall IsBrowserInstalled]);
    EXPECT_EQ(Log(), "\nHH:MM:SS - WARNING : An error occurred: 4294956483");
}

}  // namespace
