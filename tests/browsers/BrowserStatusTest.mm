// What the installers make of Launch Services' answers: this program answers in its place.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <vector>

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

    /// What came into the log since the last look: one line, its time left out.
    std::string NextLine() {
        const std::string start = "\nHH:MM:SS - ";
        const std::string line = Log().substr(seen);
        seen += line.size();
        EXPECT_EQ(line.rfind(start), 0U) << line;
        return line.substr(start.size());
    }

    LogFile log;
    size_t seen = 0;
};

struct Browser {
    const char* name;
    Class<OptionalBrowserInstaller> installer;
    const char* identifier;
    const char* found;
    const char* notFound;
    const char* otherStatus;
};

std::vector<Browser> Browsers() {
    return {{"Chrome", [ChromeInstall class], "com.google.Chrome",
             "INFO : The app's URL is: file:///Applications/Some%20App.app/",
             "WARNING : App not found", "FAILURE : An error occurred: 4294956483"},
            {"Edge", [EdgeInstall class], "com.microsoft.edgemac",
             "INFO : Application URL is: file:///Applications/Some%20App.app/",
             "INFO : Edge application not found!", "WARNING : An error occurred: 4294956483"},
            {"Firefox", [FFoxInstall class], "org.mozilla.firefox",
             "INFO : Application URL is: file:///Applications/Some%20App.app/",
             "INFO : Firefox application not found!", "WARNING : An error occurred: 4294956483"}};
}

TEST_F(BrowserStatusTest, OneThatIsFound) {
    answer = noErr;
    for (const Browser& browser : Browsers()) {
        EXPECT_TRUE([browser.installer IsBrowserInstalled]) << browser.name;
        EXPECT_STREQ([asked UTF8String], browser.identifier);
        EXPECT_EQ(NextLine(), browser.found);
    }
}

TEST_F(BrowserStatusTest, OneThatIsNotFound) {
    answer = -10814;
    for (const Browser& browser : Browsers()) {
        EXPECT_FALSE([browser.installer IsBrowserInstalled]) << browser.name;
        EXPECT_EQ(NextLine(), browser.notFound);
        EXPECT_FALSE([browser.installer IsExtensionInstalled]) << browser.name;
        EXPECT_TRUE([browser.installer InstallExtension])
            << browser.name << ": nothing to do counts as success";
        seen = Log().size();
    }
}

TEST_F(BrowserStatusTest, AnotherStatusIsShownUnsigned) {
    answer = -10813;
    for (const Browser& browser : Browsers()) {
        EXPECT_FALSE([browser.installer IsBrowserInstalled]) << browser.name;
        EXPECT_EQ(NextLine(), browser.otherStatus);
    }
}

}  // namespace
